#include "AttributeMap.h"
#include "VerifyTest.h"

#include <limits>

using namespace Ovra::Geo;

using Breaking = void (*)(ClosedCase&);
Q_DECLARE_METATYPE(Breaking)

namespace
{

using T = AttributeType;

void makePeriodic(ClosedCase& c)
{
    c.face->attributes().insert(T::PeriodicPairId, 1);
    c.face->attributes().insert(T::PeriodicSideId, 1);
    c.walls->attributes().insert(T::PeriodicPairId, 1);
    c.walls->attributes().insert(T::PeriodicSideId, 2);
}

void tie(ClosedCase& c, int vertex, int dimension, int id, const QVariantList& weights)
{
    AttributeMap& attributes = c.vertex(vertex);
    attributes.insert(T::ExtrudedEntityType, dimension);
    attributes.insert(T::ExtrudedEntityId, id);
    attributes.insert(T::ExtrudedWeights, weights);
}

/// The bottom is the rotor side of a device, the walls stand for the stator side; of the rotor's
/// vertices only the third has a partner.
void makeRotor(ClosedCase& c)
{
    c.region->attributes().insert(T::MaterialType, QStringLiteral("rotating_device"));
    c.face->attributes().insert(T::StatorFace, c.walls->id());
    c.walls->attributes().insert(T::RotorFace, c.face->id());
    c.vertex(3).insert(T::StatorVertex, 4);
    c.vertex(4).insert(T::RotorVertex, 3);
}

} // namespace

/// \brief Runs the tool on one broken case for each kind of finding.
class TestVerifyFindings : public VerifyTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }

    void findsElements_data()
    {
        addColumns();
        addRow("bad-point",
               [](ClosedCase& c) {
                   c.vertices[3]->setPoint(Vector(0, 0, std::numeric_limits<double>::quiet_NaN()));
               },
               {"error bad-point: mesh vertex 4 at (0, 0, nan) has a coordinate that is no finite "
                "number"});
        addRow(
            "vertex-count, face",
            [](ClosedCase& c) {
                c.addElement(2, {1, 2}, c.addFace());
            },
            {"error vertex-count: mesh face 5 at (0.5, 0, 0) has 2 vertices; a face has 3 or 4"});
        addRow(
            "vertex-count, region",
            [](ClosedCase& c) {
                for (int i = 0; i < 3; ++i) {
                    c.addVertex(Vector(i, 1, 1));
                }
                c.addElement(3, {1, 2, 3, 4, 5, 6, 7}, c.region);
            },
            {"error vertex-count: mesh region 2 at (0.571429, 0.571429, 0.571429) has 7 vertices; "
             "a region has 4, 5, 6 or 8"});
        addRow("repeated-vertex",
               [](ClosedCase& c) {
                   c.addElement(3, {1, 2, 3, 3}, c.region);
               },
               {"error repeated-vertex: mesh region 2 at (0.25, 0.5, 0) names mesh vertex 3 twice; "
                "the vertices of an element must be different"});
        addRow(
            "degenerate-element",
            [](ClosedCase& c) { c.vertices[3]->setPoint(Vector(0.25, 0.25, 0)); },
            {"error degenerate-element: mesh region 1 at (0.3125, 0.3125, 0) is flat: its volume "
             "of 0 is at most 1e-12 of its longest edge cubed"});
        addRow(
            "degenerate-element, face",
            [](ClosedCase& c) {
                c.addVertex(Vector(2, 0, 0));
                c.addElement(2, {1, 2, 5}, c.addFace());
            },
            {"error degenerate-element: mesh face 5 at (1, 0, 0) is flat: its area of 0 is at most "
             "1e-12 of its longest edge squared"});
        addRow(
            "inverted-element", [](ClosedCase& c) { c.vertices[3]->setPoint(Vector(0, 0, -1)); },
            {"error inverted-element: mesh region 1 at (0.25, 0.25, -0.25) is inside out: its "
             "volume of -0.166667 is negative; the order of a tetrahedron's vertices must make it "
             "positive"});
        addRow(
            "twisted-element",
            [](ClosedCase& c) {
                c.addVertex(Vector(1, 1, 0));
                c.addElement(2, {1, 2, 3, 5}, c.addFace());
            },
            {"warning twisted-element: mesh face 5 at (0.5, 0.5, 0) is twisted: its sides cross"});
        addRow("duplicate-element",
               [](ClosedCase& c) {
                   c.addElement(2, {1, 2, 3}, c.face);
               },
               {"error duplicate-element: mesh face 5 at (0.333333, 0.333333, 0) has the same "
                "vertices as mesh face 1"});
        addRow(
            "no-parent", [](ClosedCase& c) { c.face->removeChild(c.bottom); },
            {"error no-parent: mesh face 1 at (0.333333, 0.333333, 0) stands on no model entity, "
             "or on one that the model does not have; a mesh face must stand on a model face"});
        addRow("unused-vertex", [](ClosedCase& c) { c.addVertex(Vector(2, 2, 2)); },
               {"error unused-vertex: mesh vertex 5 at (2, 2, 2) is used by no mesh edge, face or "
                "region"});
        addRow("edge-without-face",
               [](ClosedCase& c) {
                   c.addVertex(Vector(2, 0, 0));
                   c.addElement(1, {1, 5}, c.addEdge());
               },
               {"warning edge-without-face: mesh edge 1 at (1, 0, 0) is a side of no mesh face"});
    }

    void findsElements() { checkRow(); }

    void findsLinksAndSides_data()
    {
        addColumns();
        addRow(
            "one-way-link", [](ClosedCase& c) { c.region->removeAdjacency(c.face); },
            {"error one-way-link: model face 3 at (0.5, 0.5, 0) lists model region 2, which does "
             "not list it; links run both ways"});
        addRow(
            "repeated-link", [](ClosedCase& c) { c.face->addAdjacency(c.region); },
            {"warning repeated-link: model face 3 at (0.5, 0.5, 0) lists model region 2 more than "
             "once"});
        addRow(
            "too-many-regions",
            [](ClosedCase& c) {
                c.link(c.face, c.addRegion());
                c.link(c.face, c.addRegion());
            },
            {"warning too-many-regions: model face 3 at (0.5, 0.5, 0) bounds 3 model regions; it "
             "has two sides"});
        addRow("too-many-elements",
               [](ClosedCase& c) {
                   c.link(c.face, addBelow(c));
                   c.addVertex(Vector(0, 0, -2));
                   c.addElement(3, {1, 3, 2, 6}, c.region);
               },
               {"error too-many-elements: mesh face 1 at (0.333333, 0.333333, 0) lies between 3 "
                "elements; a face has two sides"});
        addRow(
            "too-many-elements, no face",
            [](ClosedCase& c) {
                c.mesh()->remove(c.bottom);
                c.link(c.face, addBelow(c));
                c.addVertex(Vector(0, 0, -2));
                c.addElement(3, {1, 3, 2, 6}, c.region);
            },
            {"error too-many-elements: mesh region 1 at (0.25, 0.25, 0.25) shares its side of the "
             "mesh vertices 1, 2, 3 with mesh region 2, mesh region 3; a side lies between two "
             "elements"});
        addRow("face-without-element",
               [](ClosedCase& c) {
                   for (const Vector& p : {Vector(5, 0, 0), Vector(6, 0, 0), Vector(5, 1, 0)}) {
                       c.addVertex(p);
                   }
                   c.addElement(2, {5, 6, 7}, c.face);
               },
               {"error face-without-element: mesh face 5 at (5.33333, 0.333333, 0) is a side of no "
                "element, though its model face 3 bounds model region 2, which has a mesh"});
        addRow("no-side",
               [](ClosedCase& c) {
                   for (const Vector& p : {Vector(5, 0, 0), Vector(6, 0, 0), Vector(6, 1, 0),
                                           Vector(5, 1, 0), Vector(5, 0, 1)}) {
                       c.addVertex(p);
                   }
                   c.addElement(3, {5, 6, 7, 8, 9}, c.region);
                   c.addElement(2, {5, 6, 7}, c.addFace());
               },
               {"error no-side: mesh face 5 at (5.66667, 0.333333, 0) has all its vertices in mesh "
                "region 2, but is no side of it"});
        addRow("overlapping-elements",
               [](ClosedCase& c) {
                   c.addVertex(Vector(0.25, 0.25, 2));
                   c.addElement(3, {1, 2, 3, 5}, c.region);
               },
               {"error overlapping-elements: mesh region 1 at (0.25, 0.25, 0.25) lies on the same "
                "side of the mesh vertices 1, 2, 3 as mesh region 2; the two overlap"});
        addRow("missing-neighbour",
               [](ClosedCase& c) {
                   ModelRegion* const far = c.addRegion();
                   c.link(c.face, far);
                   for (const Vector& p :
                        {Vector(5, 0, 0), Vector(6, 0, 0), Vector(5, 1, 0), Vector(5, 0, 1)}) {
                       c.addVertex(p);
                   }
                   c.addElement(3, {5, 6, 7, 8}, far);
               },
               {"warning missing-neighbour: mesh face 1 at (0.333333, 0.333333, 0) is a side of no "
                "element of model region 3, which its model face 3 bounds"});
        addRow("foreign-element", [](ClosedCase& c) { addBelow(c); },
               {"warning foreign-element: mesh face 1 at (0.333333, 0.333333, 0) is a side of mesh "
                "region 2 in model region 3, which its model face 3 does not bound"});
        addRow(
            "uncovered-side, end", [](ClosedCase& c) { c.mesh()->remove(c.bottom); },
            {"warning uncovered-side: mesh region 1 at (0.25, 0.25, 0.25) has no mesh face on its "
             "side of the mesh vertices 1, 2, 3, where the mesh ends"});
        addRow(
            "uncovered-side, interface",
            [](ClosedCase& c) {
                c.mesh()->remove(c.bottom);
                addBelow(c);
                c.addElement(2, {1, 3, 5}, c.addFace());
                c.addElement(2, {3, 2, 5}, c.addFace());
                c.addElement(2, {2, 1, 5}, c.addFace());
            },
            {"warning uncovered-side: mesh region 1 at (0.25, 0.25, 0.25) has no mesh face on its "
             "side of the mesh vertices 1, 2, 3, where model region 3 begins"});
    }

    void findsLinksAndSides() { checkRow(); }

    void findsAttributes_data()
    {
        addColumns();
        addRow("unknown-attribute",
               [](ClosedCase& c) { c.region->attributes().insert(AttributeType(), 5); },
               {"warning unknown-attribute: model region 2 at (0.25, 0.25, 0.25) has an attribute "
                "whose tag is not known"});
        addRow(
            "attribute-type, model entity",
            [](ClosedCase& c) {
                c.region->attributes().insert(T::MaterialId, QStringLiteral("copper"));
            },
            {"error attribute-type: model region 2 at (0.25, 0.25, 0.25) has material_id of type "
             "QString; an integer is expected"});
        addRow(
            "attribute-type, mesh entity",
            [](ClosedCase& c) { c.tetrahedron->attributes().insert(T::InBL, 0.5); },
            {"error attribute-type: mesh region 1 at (0.25, 0.25, 0.25) has in_bl of type double; "
             "true or false is expected"});
        addRow("attribute-type, model",
               [](ClosedCase& c) { c.model()->attributes().insert(T::PeriodicOrigin, 1); },
               {"error attribute-type: the model has periodic_origin of type int; a vector is "
                "expected"});
        addRow("attribute-value",
               [](ClosedCase& c) {
                   c.model()->attributes().insert(T::VisualScaleFactor,
                                                  std::numeric_limits<double>::infinity());
               },
               {"error attribute-value: the model has a number in visual_scale_factor that is not "
                "finite"});
        addRow(
            "unknown-material",
            [](ClosedCase& c) {
                c.region->attributes().insert(T::MaterialType, QStringLiteral("Fluid"));
            },
            {"warning unknown-material: model region 2 at (0.25, 0.25, 0.25) has the material_type "
             "\"Fluid\", which counts as neither fluid nor solid; known are fluid, solid, "
             "resistance, internal_fan, check_valve, rotating_device, centrifugal_fan, "
             "heat_exchanger, heat_sink, ecomp_2resist, ecomp_tec, led_device"});
        addRow(
            "unanswered-link", [](ClosedCase& c) { c.face->attributes().insert(T::StatorFace, 4); },
            {"error unanswered-link: model face 3 at (0.5, 0.5, 0) names in stator_face the model "
             "face 4, whose rotor_face is 0"});
        addRow("unanswered-link, vertex",
               [](ClosedCase& c) { c.vertex(2).insert(T::NewMotionVertex, 3); },
               {"error unanswered-link: mesh vertex 2 at (1, 0, 0) names in new_motion_vertex the "
                "mesh vertex 3, whose original_motion_vertex is 0"});
    }

    void findsAttributes() { checkRow(); }

    void findsNamesOfNothing_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("on");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("named");
        const auto row = [](const char* tag, const char* on, const QVariant& value,
                            const char* named) {
            QTest::newRow(tag) << QString(tag) << QString(on) << value << QString(named);
        };
        for (const char* tag : {"case_faces", "cold_faces", "hot_faces"}) {
            row(tag, "region", QVariantList{3, 99}, "model face 99");
        }
        row("original_shell_face", "region", 99, "model face 99");
        for (const char* tag :
             {"extruded_face", "fluid_face", "new_shell_face", "non_extruded_face", "periodic_face",
              "rotor_face", "solid_face", "stator_face"}) {
            row(tag, "face", 99, "model face 99");
        }
        for (const char* tag : {"fluid_region", "new_motion_region", "original_motion_region"}) {
            row(tag, "region", 98, "model region 98");
        }
        for (const char* tag : {"new_motion_vertex", "original_motion_vertex", "rotor_vertex",
                                "shell_vertex", "stator_vertex"}) {
            row(tag, "vertex", 97, "mesh vertex 97");
        }
    }

    void findsNamesOfNothing()
    {
        QFETCH(QString, tag);
        QFETCH(QString, on);
        QFETCH(QVariant, value);
        QFETCH(QString, named);
        ClosedCase closed;
        AttributeMap& map = on == "region" ? closed.region->attributes()
                            : on == "face" ? closed.face->attributes()
                                           : closed.vertex(1);
        map.insert(AttributeType::fromString(tag), value);
        const QString where = on == "region" ? "model region 2 at (0.25, 0.25, 0.25)"
                              : on == "face" ? "model face 3 at (0.5, 0.5, 0)"
                                             : "mesh vertex 1 at (0, 0, 0)";
        QCOMPARE(errorsOf(verify(closed)),
                 QStringList(QStringLiteral("error missing-entity: %1 names in %2 the %3, which "
                                            "does not exist")
                                 .arg(where, tag, named)));
    }

    void takesTheNumbersThatNameNothing_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("value");
        QTest::addColumn<bool>("sound");
        QTest::newRow("no partner") << "stator_face" << 0 << true;
        QTest::newRow("no original") << "original_shell_face" << -1 << true;
        QTest::newRow("minus one is no other") << "stator_face" << -1 << false;
        QTest::newRow("presence counts") << "new_shell_face" << 0 << false;
    }

    void takesTheNumbersThatNameNothing()
    {
        QFETCH(QString, tag);
        QFETCH(int, value);
        ClosedCase closed;
        closed.face->attributes().insert(AttributeType::fromString(tag), value);
        QTEST(verify(closed).exitCode == 0, "sound");
    }

    void findsPairs_data()
    {
        addColumns();
        addRow(
            "periodic-pair, one face",
            [](ClosedCase& c) { c.face->attributes().insert(T::PeriodicPairId, 7); },
            {"error periodic-pair: model face 3 at (0.5, 0.5, 0) belongs to the periodic pair 7, "
             "which has 0 faces with the periodic_side_id 1 and 1 with another; one of each is "
             "expected"});
        addRow(
            "periodic-pair, one side",
            [](ClosedCase& c) {
                makePeriodic(c);
                c.walls->attributes().insert(T::PeriodicSideId, 1);
            },
            {"error periodic-pair: model face 3 at (0.5, 0.5, 0) belongs to the periodic pair 1, "
             "which has 2 faces with the periodic_side_id 1 and 0 with another; one of each is "
             "expected"});
        addRow(
            "periodic-pair, no mesh",
            [](ClosedCase& c) {
                makePeriodic(c);
                c.mesh()->remove(c.bottom);
            },
            {"error periodic-pair: model face 3 at (0.5, 0.5, 0) has no mesh, though its partner, "
             "model face 4, has one"});
        addRow(
            "extruded-pair, itself",
            [](ClosedCase& c) { c.face->attributes().insert(T::ExtrudedFace, 3); },
            {"error extruded-pair: model face 3 at (0.5, 0.5, 0) names itself in extruded_face"});
        addRow(
            "extruded-pair, no mesh",
            [](ClosedCase& c) {
                c.walls->attributes().insert(T::ExtrudedFace, 3);
                c.mesh()->remove(c.bottom);
            },
            {"error extruded-pair: model face 3 at (0.5, 0.5, 0) has no mesh, though its partner, "
             "model face 4, has one"});
        addRow("missing-link",
               [](ClosedCase& c) {
                   makePeriodic(c);
                   for (const int id : {1, 2, 3}) {
                       c.vertex(id).insert(T::PeriodicEntityType, 0);
                       c.vertex(id).insert(T::PeriodicEntityId, id);
                       c.vertex(id).insert(T::PeriodicWeights, QVariantList{1.0});
                   }
               },
               {"error missing-link: mesh vertex 4 at (0, 0, 1) lacks its periodic_entity_type and "
                "periodic_entity_id, or they mean nothing"});
        addRow("missing-link, remains of one",
               [](ClosedCase& c) { c.vertex(2).insert(T::ExtrudedWeights, QVariantList{1.0}); },
               {"error missing-link: mesh vertex 2 at (1, 0, 0) lacks its extruded_entity_type and "
                "extruded_entity_id, or they mean nothing"});
        addRow("missing-entity of a link",
               [](ClosedCase& c) { tie(c, 2, 2, 99, QVariantList{1.0}); },
               {"error missing-entity: mesh vertex 2 at (1, 0, 0) names in extruded_entity_id the "
                "mesh face 99, which does not exist"});
        addRow("stray-link",
               [](ClosedCase& c) {
                   c.face->attributes().insert(T::ExtrudedFace, 4);
                   for (const int id : {1, 2, 3}) {
                       tie(c, id, 0, id, QVariantList{1.0});
                   }
                   tie(c, 4, 2, 2, QVariantList{0.5, 0.25, 0.25});
               },
               {"error stray-link: mesh vertex 4 at (0, 0, 1) names in extruded_entity_id the mesh "
                "face 2, which does not lie on model face 3"});
        addRow("bad-weights, too few", [](ClosedCase& c) { tie(c, 2, 2, 1, QVariantList{1.0}); },
               {"error bad-weights: mesh vertex 2 at (1, 0, 0) has 1 value in extruded_weights for "
                "the 3 vertices of mesh face 1; at most 4 of them may be positive"});
        addRow(
            "bad-weights, sum",
            [](ClosedCase& c) {
                tie(c, 2, 2, 1, QVariantList{0.5, 0.25, 0.125});
            },
            {"error bad-weights: mesh vertex 2 at (1, 0, 0) has the extruded_weights (0.5, 0.25, "
             "0.125) for mesh face 1; 3 are expected, none negative, with the sum 1"});
        addRow(
            "bad-weights, negative",
            [](ClosedCase& c) {
                tie(c, 2, 2, 1, QVariantList{1.5, -0.5, 0.0});
            },
            {"error bad-weights: mesh vertex 2 at (1, 0, 0) has the extruded_weights (1.5, -0.5, "
             "0) for mesh face 1; 3 are expected, none negative, with the sum 1"});
        addRow(
            "bad-weights, of a vertex", [](ClosedCase& c) { tie(c, 2, 0, 1, QVariantList{}); },
            {"error bad-weights: mesh vertex 2 at (1, 0, 0) has the extruded_weights () for mesh "
             "vertex 1; 1 is expected, none negative, with the sum 1"});
    }

    void findsPairs() { checkRow(); }

    void findsMotion_data()
    {
        addColumns();
        addRow("replica",
               [](ClosedCase& c) {
                   ModelRegion* const old = c.addRegion();
                   old->attributes().insert(T::NewMotionRegion, 2);
                   c.region->attributes().insert(T::MotionType, 1);
                   c.region->attributes().insert(T::OriginalMotionRegion, 3);
                   for (const int id : {1, 2, 3}) {
                       c.vertex(id).insert(T::OriginalMotionVertex, id);
                   }
               },
               {"error replica: model region 2 at (0.25, 0.25, 0.25) has 1 element, but its "
                "original, model region 3, only 0; model region 2 is the replica of model region "
                "3",
                "error replica: mesh vertex 4 at (0, 0, 1) stands on the replica model region 2 "
                "without an original_motion_vertex"});
        const QStringList lone = {
            "error rotor-side: mesh vertex 1 at (0, 0, 0) stands on the rotor side model face 3 "
            "without a stator_vertex",
            "error rotor-side: mesh vertex 2 at (1, 0, 0) stands on the rotor side model face 3 "
            "without a stator_vertex"};
        addRow("rotor-side, vertex", makeRotor, lone);
        addRow(
            "rotor-side, element",
            [](ClosedCase& c) {
                makeRotor(c);
                c.link(c.face, addBelow(c));
            },
            lone + QStringList("error rotor-side: mesh face 1 at (0.333333, 0.333333, 0) on the "
                               "rotor or stator side model face 3 has 2 elements, not one"));
    }

    void findsMotion() { checkRow(); }

    void saysWhoseTwinAFaceIs()
    {
        ClosedCase closed;
        closed.face->attributes().insert(T::SolidFace, 4);
        closed.walls->attributes().insert(T::FluidFace, 3);
        for (ModelEntity* face :
             {static_cast<ModelEntity*>(closed.face), static_cast<ModelEntity*>(closed.walls)}) {
            face->attributes().insert(T::NonExtrudedFace, 9);
        }
        const QStringList errors = errorsOf(verify(closed));
        QCOMPARE(errors.size(), 2);
        QVERIFY2(errors.at(0).endsWith(" names in non_extruded_face the model face 9, which does "
                                       "not exist; its solid side is model face 4"),
                 qPrintable(errors.at(0)));
        QVERIFY2(errors.at(1).endsWith(" names in non_extruded_face the model face 9, which does "
                                       "not exist; model face 4 is the solid side of model face 3"),
                 qPrintable(errors.at(1)));
    }

    void passesOverSuppressedRotors()
    {
        ClosedCase closed;
        makeRotor(closed);
        closed.region->attributes().insert(T::IsSuppressed, true);
        QCOMPARE(verify(closed).exitCode, 0);
    }

private:
    static void addColumns()
    {
        QTest::addColumn<Breaking>("breaking");
        QTest::addColumn<QStringList>("lines");
    }

    static void addRow(const char* name, Breaking breaking, const QStringList& lines)
    {
        QTest::newRow(name) << breaking << lines;
    }

    /// All errors must be those of the row; of warnings, which a broken case may bring along, only
    /// those of its kind.
    void checkRow()
    {
        QFETCH(Breaking, breaking);
        QFETCH(QStringList, lines);
        ClosedCase closed;
        breaking(closed);
        const ToolRun run = verify(closed);
        const QString kind = lines.front().section(':', 0, 0) + ':';
        QStringList found;
        for (const QString& line : linesOf(run)) {
            if (line.startsWith("error ") || line.startsWith(kind)) {
                found += line;
            }
        }
        QCOMPARE(found, lines);
        QCOMPARE(run.exitCode, kind.startsWith("error") ? 7 : 0);
    }
};

QTEST_GUILESS_MAIN(TestVerifyFindings)
#include "tst_VerifyFindings.moc"
