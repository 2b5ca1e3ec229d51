#pragma once

#include <QFile>
#include <QIODevice>
#include <QPointer>

//! \brief The bytes of an open file that belongs to somebody else, for the body of an upload.
//!
//! The owner may move, close or delete the file at any time: reading then fails, and nothing touches
//! the file any more. The size is that of the file at construction; a file that has grown since is
//! read no further, one that has shrunk fails.
class FileBodyDevice : public QIODevice
{
    Q_OBJECT

public:
    //! \a file is open for reading.
    explicit FileBodyDevice(QFile *file, QObject *parent = nullptr);

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    QPointer<QFile> m_file;
    qint64 m_size;
};
