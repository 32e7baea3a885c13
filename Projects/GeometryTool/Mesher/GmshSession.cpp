#include "GmshSession.h"

#include "QuietStreams.h"
#include "SecondName.h"
#include "ToolError.h"

#include <gmsh.h>
#include <optional>

namespace Ovra::GeoTool
{

namespace
{

QString cleaned(const std::string& text)
{
    return SecondName::saidOfRole(QString::fromStdString(text).simplified());
}

/// \brief Runs \p action; the text of what it throws, if it throws.
std::optional<QString> failureOf(const std::function<void()>& action)
{
    try {
        const QuietStreams quiet;
        action();
        return std::nullopt;
    } catch (const ToolError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::string& text) {
        return cleaned(text);
    } catch (const char* text) {
        return cleaned(text);
    } catch (const std::exception& exception) {
        return cleaned(exception.what());
    } catch (...) {
        std::string last;
        gmsh::logger::getLastError(last);
        return cleaned(last);
    }
}

} // namespace

GmshSession::GmshSession()
{
    run(
        QStringLiteral("Gmsh does not start"),
        [] {
            constexpr bool readUserSettings = false;
            gmsh::initialize(0, nullptr, readUserSettings);
            gmsh::option::setNumber("General.Terminal", 0);
            // Other lines tell times: their lengths would change where things lie in memory.
            constexpr int errorsAndWarnings = 2;
            gmsh::option::setNumber("General.Verbosity", errorsAndWarnings);
            gmsh::logger::start();
        },
        false);
}

GmshSession::~GmshSession()
{
    failureOf([] { gmsh::finalize(); });
}

void GmshSession::run(const QString& what, const std::function<void()>& action, bool isInput)
{
    const std::optional<QString> failure = failureOf(action);
    if (!failure) {
        return;
    }
    const QString reason =
        failure->isEmpty() ? QStringLiteral("Gmsh fails without saying why") : *failure;
    throw ToolError(isInput ? ExitCode::InputDamaged : ExitCode::Unsuitable,
                    what + QStringLiteral(": ") + reason);
}

QStringList GmshSession::takeWarnings()
{
    static const QString prefix = QStringLiteral("Warning: ");
    std::vector<std::string> lines;
    gmsh::logger::get(lines);
    gmsh::logger::stop();
    gmsh::logger::start();
    QStringList warnings;
    for (const std::string& line : lines) {
        const QString text = cleaned(line);
        if (text.startsWith(prefix)) {
            warnings.append(text.mid(prefix.size()));
        }
    }
    warnings.removeDuplicates();
    return warnings;
}

bool GmshSession::hasFeature(const QString& feature)
{
    std::string options;
    gmsh::option::getString("General.BuildOptions", options);
    return cleaned(options).split(QLatin1Char(' ')).contains(feature);
}

} // namespace Ovra::GeoTool
