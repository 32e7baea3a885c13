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
    explicit SequentialDevice(const QByteArray& bytes)
        : bytes_(bytes)
    {
        open(QIODevice::ReadOnly);
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

/// \brief A device that takes so many bytes and no more.
class FullDevice : public QIODevice
{
public:
    explicit FullDevice(qint64 room)
        : room_(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    QByteArray taken;

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taking = std::min<qint64>(size, room_ - taken.size());
        taken.append(data, taking);
        return taking;
    }

private:
    qint64 room_;
};

/// \brief A device that takes a part of what it is given at a time, and all in the end.
class SlowDevice : public QIODevice
{
public:
    explicit SlowDevice(qint64 most)
        : most_(most)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    QByteArray taken;

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taking = std::min(size, most_);
        taken.append(data, taking);
        return taking;
    }

private:
    qint64 most_;
};

/// \brief A device that throws when it has as many bytes as it takes.
class ThrowingDevice : public QIODevice
{
public:
    explicit ThrowingDevice(qint64 room)
        : room_(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char*, qint64 size) override
    {
        room_ -= size;
        if (room_ < 0) {
            throw std::runtime_error("no more room");
        }
        return size;
    }

private:
    qint64 room_;
};

} // namespace StreamTesting
