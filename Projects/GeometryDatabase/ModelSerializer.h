#pragma once

#include "GeometryDatabaseExport.h"

class QDataStream;
class QTextStream;

namespace Ovra::Geo
{

class Model;

/// \brief Reads and writes the stream form of a Model; one derived class for each format.
///
/// A serializer is made for one operation. It sets neither version nor byte order of a stream: who
/// calls one directly sets QDataStream version 12, as Model does.
///
/// Reading trusts no stream. It stops when the stream ends or contradicts itself; the stream's
/// status tells that: QDataStream::ReadPastEnd or QDataStream::ReadCorruptData. What came before
/// stays in the model, what was in it before stays valid, and memory grows with what is read rather
/// than with what the stream announces. Nothing is read from a stream whose status is not Ok to
/// begin with.
class OVRA_GEO_EXPORT ModelSerializer
{
public:
    /// \brief The formats; the value stands in the stream.
    enum Format : int
    {
        Format2013 = 1
    };

    /// \brief A new serializer, which the caller deletes.
    /// \param format any number, as read from a stream
    /// \param model  what is read into or written; not owned
    /// \return null for a number that is no format
    static ModelSerializer* create(Format format, Model* model);

    virtual ~ModelSerializer();

    /// \brief Reads everything behind the header, which Model::read() takes in.
    virtual void read(QDataStream& stream) = 0;

    /// \brief Writes the text form, header included, which is for people and has no reader.
    virtual void write(QTextStream& stream) = 0;

    /// \brief Writes the binary form, header included.
    virtual void write(QDataStream& stream) = 0;

protected:
    ModelSerializer(Format format, Model* model); ///< see create(); does not own the model

    /// \brief The format's number.
    Format format() const { return format_; }

    /// \brief The model that is read into or written.
    Model* model() const { return model_; }

private:
    Q_DISABLE_COPY_MOVE(ModelSerializer)

    Format format_;
    Model* model_;
};

} // namespace Ovra::Geo
