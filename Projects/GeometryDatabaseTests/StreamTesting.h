#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QLoggingCategory>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <cstring>
#include <stdexcept>

/// \file
/// \brief What the tests of streams share.

namespace StreamTesting
{

/// \brief The bytes of a text of hexadecimal digits, blanks between them ignored.
inline QByteArray hex(const char* digits)
{
    return QByteArray::fromHex(digits);
}

/// \brief What \p write does to a binary stream, at version 12 unless said otherwise.
template <typename Write>
QByteArray binary(Write write, int version = QDataStream::Qt_4_6)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(version);
    write(stream);
    return bytes;
}

/// \brief What \p write does to a text stream.
template <typename Write>
QString text(Write write)
{
    QString result;
    QTextStream stream(&result);
    write(stream);
    stream.flush();
    return result;
}

/// \brief Calls \p read with a stream on \p bytes, at version 12 unless said otherwise.
/// \return the status of the stream afterwards
template <typename Read>
QDataStream::Status readFrom(const QByteArray& bytes, Read read, int version = QDataStream::Qt_4_6)
{
    QDataStream stream(bytes);
    stream.setVersion(version);
    read(stream);
    return stream.status();
}

/// \brief Collects the messages of Qt and the library during its life instead of printing them.
class Messages
{
public:
    Messages()
    {
        collected().clear();
        previous_ = qInstallMessageHandler(collect);
    }

    ~Messages() { qInstallMessageHandler(previous_); }

    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    static bool isEmpty() { return collected().isEmpty(); }
    static QString join() { return collected().join("\n"); }
    static void clear() { collected().clear(); }

private:
    static QStringList& collected()
    {
        static QStringList messages;
        return messages;
    }

    static void collect(QtMsgType, const QMessageLogContext&, const QString& message)
    {
        collected().append(message);
    }

    QtMessageHandler previous_ = nullptr;
};

/// \brief A device that can only be read on, as a pipe.
class SequentialDevice : public QIODevice
{
public:
    explicit SequentialDevice(const QByteArray& bytes, OpenMode mode = QIODevice::ReadOnly)
        : bytes_(bytes)
    {
        open(mode);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const qsizetype size = std::min<qsizetype>(maxSize, bytes_.size() - position_);
        std::memcpy(data, bytes_.constData() + position_, static_cast<size_t>(size));
        position_ += size;
        return size;
    }

    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray bytes_;
    qsizetype position_ = 0;
};

/// \brief A device to write to, without a buffer of its own.
class SinkDevice : public QIODevice
{
public:
    SinkDevice() { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }

    QByteArray taken;
    int writes = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 take(const char* data, qint64 size)
    {
        ++writes;
        taken.append(data, size);
        return size;
    }
};

/// \brief A device that takes so many bytes and no more.
class FullDevice : public SinkDevice
{
public:
    explicit FullDevice(qint64 room)
        : room_(room)
    {
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        return take(data, std::min<qint64>(size, room_ - taken.size()));
    }

private:
    qint64 room_;
};

/// \brief A device that takes a part of what it is given at a time, and all in the end.
class SlowDevice : public SinkDevice
{
public:
    explicit SlowDevice(qint64 most)
        : most_(most)
    {
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        return take(data, std::min(size, most_));
    }

private:
    qint64 most_;
};

/// \brief A device that throws rather than take more bytes than it has room for.
class ThrowingDevice : public SinkDevice
{
public:
    explicit ThrowingDevice(qint64 room)
        : room_(room)
    {
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        if (taken.size() + size > room_) {
            throw std::runtime_error("no more room");
        }
        return take(data, size);
    }

private:
    qint64 room_;
};

} // namespace StreamTesting
