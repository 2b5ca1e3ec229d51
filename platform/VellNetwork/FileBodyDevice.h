#pragma once

#include <QFile>
#include <QIODevice>
#include <QPointer>

//! \brief Reads an open file that another object owns, for the body of an upload.
//!
//! The owner may seek in, close or delete the file at any time: reading fails if the file is closed or deleted. The size is that of
//! the file at construction; if the file has grown since, the rest is not read; if it has shrunk, reading fails.
class FileBodyDevice : public QIODevice
{
    Q_OBJECT

public:
    //! \param file must be open for reading
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
