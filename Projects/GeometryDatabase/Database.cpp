#include "Database.h"

#include "Mesh.h"
#include "Model.h"

namespace Ovra::Geo
{

Database::Database()
    : model_(new Model)
    , mesh_(new Mesh(model_))
{
}

Database::~Database()
{
    delete mesh_;
    delete model_;
}

void Database::clear()
{
    mesh_->clear();
    model_->clear();
}

} // namespace Ovra::Geo
