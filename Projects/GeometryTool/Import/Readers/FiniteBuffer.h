#pragma once

#include <QByteArray>

#include <ios>
#include <streambuf>

namespace Ovra::GeoTool
{

/// \brief The bytes of a file for readers that do not notice its end.
///
/// Who reads on behind the end gets an exception, as long as std::ios::badbit is among the
/// exceptions() of the stream. A loop that waits for an end mark which is not there then ends with
/// the file.
class FiniteBuffer : public std::streambuf
{
public:
    explicit FiniteBuffer(const QByteArray& bytes);

    /// \brief Number of bytes that have been read.
    qint64 position() const { return gptr() - eback(); }

    /// \brief Whether more has been asked for than there is.
    bool isOverrun() const { return overrun_; }

protected:
    /// \brief Throws std::runtime_error, as it is asked for more than all.
    int_type underflow() override;
    pos_type seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode which) override;
    pos_type seekpos(pos_type position, std::ios::openmode which) override;

private:
    QByteArray bytes_;
    bool overrun_ = false;
};

} // namespace Ovra::GeoTool
