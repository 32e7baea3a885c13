#pragma once

#include <QString>
#include <QStringList>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Cuts all bodies of Gmsh's current model along one another, so that those that touch share
/// faces, edges and vertices.
///
/// Names and physical groups go over to the pieces, those of faces, edges and vertices included. A
/// piece that two entities had in common has the groups of both, and the name of the one with the
/// lower number. Where bodies overlap, the piece belongs to the smaller one, or else to the one with
/// the lower number. Needs CadModel::isOfKernel(). What
/// is not cut keeps its number.
class BodyJoining
{
public:
    /// \param tolerance gaps and overlaps up to this length are closed
    explicit BodyJoining(double tolerance);

    /// \brief Makes \p body give way wherever another one lies; its sides keep their names only
    /// where they still bound it.
    void setBackground(int body) { background_ = body; }

    /// \brief Joins; what Gmsh throws passes through, and the model is to be thrown away then.
    void join();

    /// \brief Why the result must not be used, in words; empty when nothing was lost.
    QString fault() const { return fault_; }

    /// \brief What the user should know, in words: bodies that overlapped, and those that touch the
    /// sides of the background.
    QStringList remarks() const { return remarks_; }

private:
    using Entity = std::pair<int, int>; ///< dimension and number

    struct Original
    {
        Entity entity;
        QString label;
        QString description;
        std::vector<int> groups; ///< numbers
        double measure = 0;      ///< of a body
        double slack = 0;        ///< by how much the measure of a body may change
        bool isBackground = false;
        std::vector<Entity> pieces;
    };

    void record();
    void recordBody(Original& body) const;
    void markBackground();
    void cut();
    void checkBodies();
    void assignBodies();
    void noteOverlaps(const std::vector<std::size_t>& owners, double measure);
    bool precedes(std::size_t a, std::size_t b) const;
    void assignLower();
    bool boundsBackground(const Entity& face) const;
    void noteTouch(const Entity& face);
    void addRemarks();
    void transfer() const;
    void setFault(const QString& text);

    int dimension_;
    double tolerance_;
    int background_ = 0;
    QString fault_;
    QStringList remarks_;
    std::vector<Original> originals_;
    std::map<Entity, QString> groupNames_;
    std::map<Entity, std::vector<std::size_t>> owners_; ///< originals of a piece, the first first
    std::map<std::pair<std::size_t, std::size_t>, double> overlaps_;
    std::set<std::pair<std::size_t, std::size_t>> touches_; ///< body and side of the background
};

} // namespace Ovra::GeoTool
