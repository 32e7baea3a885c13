#include "ModelSerializer.h"

#include "ModelSerializer2013.h"

namespace Ovra::Geo
{

ModelSerializer* ModelSerializer::create(Format format, Model* model)
{
    return format == Format2013 ? new ModelSerializer2013(model) : nullptr;
}

ModelSerializer::ModelSerializer(Format format, Model* model)
    : format_(format)
    , model_(model)
{
}

ModelSerializer::~ModelSerializer() = default;

} // namespace Ovra::Geo
