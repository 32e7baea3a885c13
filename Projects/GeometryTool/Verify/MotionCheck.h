#pragma once

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;

/// \brief Looks whether the replicas of moving regions and the rotor and stator sides of rotating
/// devices have all that the solver input says of them.
class MotionCheck
{
public:
    /// \param view, sink not owned; must outlive this object
    MotionCheck(const CaseView& view, FindingSink& sink);

    /// \brief Checks all replicas and all rotors.
    void run();

    /// \brief The replicas: each has an original with as many elements.
    void checkReplicas();

    /// \brief The rotor faces of the devices that are not suppressed: their vertices have stator
    /// vertices, and every mesh face on either side has exactly one element.
    void checkRotors();

private:
    void checkReplica(const Geo::ModelEntity& region);
    void checkReplicaVertices(const Geo::ModelEntity& region);
    void checkRotor(const Geo::ModelEntity& face);
    void checkOneElementEach(const Geo::ModelEntity& face);

    const CaseView& view_;
    FindingSink& sink_;
};

} // namespace Ovra::GeoTool
