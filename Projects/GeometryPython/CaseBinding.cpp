#include "Bindings.h"
#include "CaseState.h"
#include "CaseSummary.h"
#include "CaseVerifier.h"
#include "InfoJson.h"
#include "Mesh.h"
#include "MeshMeans.h"
#include "Model.h"
#include "OutputFiles.h"
#include "Preparation.h"
#include "Progress.h"
#include "QuietLibrary.h"
#include "SolverInput.h"
#include "ToolError.h"
#include "Values.h"
#include "VerifyReport.h"

#include <QTextStream>

#include <cmath>
#include <optional>
#include <pybind11/stl.h>
#include <utility>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

py::list listOf(const QStringList& texts)
{
    py::list list;
    for (const QString& text : texts) {
        list.append(toPython(text));
    }
    return list;
}

QStringList namesFrom(const py::object& names)
{
    QStringList list;
    for (const py::handle each : names) {
        list += textFrom(py::cast<py::str>(each));
    }
    return list;
}

/// Collects what the host warns of, and gives it to Python once the interpreter's lock is held again.
class Warnings
{
public:
    Warnings()
        : progress_([this](const QString& text) { texts_ += text; })
    {
    }

    Progress& progress() { return progress_; }

    void tell() const
    {
        const py::object type = py::module_::import("ovrageo.errors").attr("CaseWarning");
        for (const QString& text : texts_) {
            if (PyErr_WarnEx(type.ptr(), text.toUtf8().constData(), 2) != 0) {
                throw py::error_already_set();
            }
        }
    }

private:
    QStringList texts_;
    Progress progress_;
};

/// Does \p work, which takes the database and a Progress, without the interpreter's lock, then \p after
/// with it; what was warned of comes last, as Python may make exceptions of warnings.
template <typename Work, typename After>
auto aside(CaseState& state, Work work, After after)
{
    Warnings warnings;
    const auto done = state.aside([&](Database& database) {
        const QuietLibrary quiet;
        return work(database, warnings.progress());
    });
    after();
    warnings.tell();
    return done;
}

template <typename Work>
auto aside(CaseState& state, Work work)
{
    return aside(state, work, [] {});
}

CasePointer open(const py::str& name)
{
    auto state = std::make_shared<CaseState>();
    state->files.emplace(textFrom(name));
    aside(*state, [&state](Database& database, Progress& progress) {
        state->files->load(database, progress);
        CaseState::keyChildrenAnew(database);
        return true;
    });
    return state;
}

MeshSerializer::Format meshFormat(const std::string& name)
{
    if (name == "2014a") {
        return MeshSerializer::Format2014a;
    }
    if (name == "2014") {
        return MeshSerializer::Format2014;
    }
    if (name == "2013") {
        return MeshSerializer::Format2013;
    }
    throw py::value_error("there is no mesh format \"" + name +
                          "\"; there are 2013, 2014 and 2014a");
}

void save(CaseState& self, const py::str& name, const std::string& formatName, bool dropParents)
{
    const CaseFiles files(textFrom(name));
    if (files.name().isEmpty()) {
        throw py::value_error("a case needs a name for its files");
    }
    const MeshSerializer::Format format = meshFormat(formatName);
    const auto work = [&](Database& database, Progress& progress) {
        files.save(database, progress, format, dropParents);
        return true;
    };
    aside(self, work, [&] { self.files = files; });
}

/// In the format that holds all of it.
void saveCopy(CaseState& self, const py::str& name)
{
    const CaseFiles files(textFrom(name));
    aside(self, [&files](Database& database, Progress& progress) {
        const bool isForLatest = CaseFiles::unkeptParentCount(database) == 0;
        files.save(database, progress,
                   isForLatest ? CaseFiles::LatestMeshFormat : MeshSerializer::Format2013);
        return true;
    });
}

QString nameOf(const CaseState& state)
{
    return state.files ? state.files->name() : QStringLiteral("the case");
}

py::tuple verify(CaseState& self, int limit)
{
    if (limit < 0) {
        throw py::value_error("limit must be 0 or more");
    }
    const auto [json, text] = aside(self, [&](Database& database, Progress& progress) {
        const CaseFindings findings =
            CaseVerifier(database).verify(progress, CaseVerifier::ContentTopics, limit);
        const VerifyReport report(nameOf(self), database, findings);
        return std::make_pair(report.json(), report.text());
    });
    return py::make_tuple(toPython(QString::fromUtf8(json)), toPython(QString::fromUtf8(text)));
}

py::str info(CaseState& self)
{
    const QByteArray json = aside(self, [&self](Database& database, Progress& progress) {
        const bool hasFiles = self.files && self.files->meshFacts().format > 0;
        CaseSummary summary(self.files.value_or(CaseFiles(QString())), database, progress);
        if (!hasFiles) {
            summary.meshFile.format = CaseFiles::LatestMeshFormat;
        }
        return infoJson(summary);
    });
    return toPython(QString::fromUtf8(json));
}

QStringList operationsFrom(const py::object& operations)
{
    if (operations.is_none()) {
        return Preparation::operationNames();
    }
    const QStringList names = namesFrom(operations);
    for (const QString& name : names) {
        if (!Preparation::operationNames().contains(name)) {
            throw py::value_error(
                QStringLiteral("there is no operation \"%1\"; there are %2")
                    .arg(name, Preparation::operationNames().join(QStringLiteral(", ")))
                    .toStdString());
        }
    }
    return names;
}

py::list prepare(CaseState& self, const py::object& operations, std::optional<double> tolerance)
{
    const QStringList names = operationsFrom(operations);
    if (tolerance && !(*tolerance >= 0 && *tolerance <= 1)) {
        throw py::value_error("extrusion_tolerance must be a number from 0 to 1");
    }
    Warnings warnings;
    const auto work = [&](Database& database) {
        const QuietLibrary quiet;
        MeshMeans::forget(*database.model());
        Preparation preparation(database, warnings.progress());
        if (tolerance) {
            preparation.setExtrusionTolerance(*tolerance);
        }
        const QStringList report = preparation.run(names);
        CaseState::keyChildrenAnew(database);
        return report;
    };
    const QStringList report = self.asideOrGiveUp(
        work, "a preparation that failed has left the case undefined; open it anew");
    warnings.tell();
    return listOf(report);
}

/// As `ovrageo text -o -` prints it.
py::str text(CaseState& self)
{
    return toPython(aside(self, [](Database& database, Progress&) {
        QString dump;
        QTextStream stream(&dump);
        database.model()->write(stream);
        database.mesh()->write(stream);
        stream.flush();
        return dump;
    }));
}

SolverInput inputOf(const py::object& sections, double scale, bool labelled)
{
    SolverInput input;
    if (!std::isfinite(scale) || scale <= 0) {
        throw py::value_error("scale must be a finite number above 0");
    }
    if (!sections.is_none()) {
        input.setSections(namesFrom(sections));
    }
    input.setScale(scale);
    input.setLabelled(labelled);
    return input;
}

void writeSolverInput(CaseState& self, const py::str& path, const py::object& sections,
                      double scale, bool labelled)
{
    const SolverInput input = inputOf(sections, scale, labelled);
    const QString target = textFrom(path);
    aside(self, [&](Database& database, Progress& progress) {
        OutputFiles files;
        QTextStream stream(&files.add(target));
        input.write(database, stream, progress);
        stream.flush();
        files.commit();
        return true;
    });
}

py::str solverInput(CaseState& self, const py::object& sections, double scale, bool labelled)
{
    const SolverInput input = inputOf(sections, scale, labelled);
    return toPython(aside(self, [&](Database& database, Progress& progress) {
        QString text;
        QTextStream stream(&text);
        input.write(database, stream, progress);
        stream.flush();
        return text;
    }));
}

} // namespace

void bindCase(py::module_& module)
{
    py::class_<CaseState, CasePointer>(module, "CaseState")
        .def("close", &CaseState::close)
        .def_property_readonly("is_closed", &CaseState::isClosed)
        .def_property_readonly("name",
                               [](const CaseState& self) -> py::object {
                                   return self.files ? py::object(toPython(self.files->name()))
                                                     : py::none();
                               })
        .def("save", &save)
        .def("save_copy", &saveCopy)
        .def("forget_files", [](CaseState& self) { self.files.reset(); })
        .def("verify", &verify)
        .def("info", &info)
        .def("text", &text)
        .def("prepare", &prepare)
        .def("write_solver_input", &writeSolverInput)
        .def("solver_input", &solverInput);
    module.def("open", &open);
    module.def("make", [] { return std::make_shared<CaseState>(); });
    module.def(
        "attribute_tags", [] { return listOf(AttributeType::tags()); },
        "The tags that attributes may have, in the order of the vocabulary.");
    module.def(
        "operation_names", [] { return listOf(Preparation::operationNames()); },
        "The operations of a preparation, in the order in which they run.");
    module.def(
        "section_names", [] { return listOf(SolverInput::sectionNames()); },
        "The sections of the solver input, in the order in which they stand there.");
}

} // namespace Ovra::GeoPython
