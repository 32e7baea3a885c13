#pragma once

#include <QFile>

namespace Ovra::GeoTool
{

class Progress;

/// \brief A file to read from front to back, which shows on a Progress how far it has been read.
///
/// pos() is the byte that the reader stands at, for error messages. The chunks of QIODevice's own
/// buffer keep the counting out of the reader's inner loop.
class InputFile : public QIODevice
{
public:
    /// \param progress not owned; must outlive this object
    InputFile(const QString& path, Progress& progress);

    QString path() const { return file_.fileName(); }

    /// \brief Opens the file for reading; throws ToolError InputMissing, with the reason, if that
    /// fails.
    void openOrThrow();

    bool isSequential() const override { return false; }
    qint64 size() const override { return file_.size(); }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QFile file_;
    Progress& progress_;
};

} // namespace Ovra::GeoTool
