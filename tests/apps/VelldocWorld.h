#pragma once

#include <service/ReferenceService.h>

#include <QJsonObject>
#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

//! What one run of velldoc gave back.
struct VelldocRun
{
    int exitCode = -1; //!< -1 when it did not end by itself
    QByteArray bytes; //!< of the standard output
    QString out; //!< the same as text
    QString error;

    QJsonObject json() const; //!< of the standard output
    QJsonObject result() const; //!< its "result"
    QStringList lines() const; //!< of the standard output
};

//! \brief A service in this process, a home of its own, and velldoc run as people run it.
class VelldocWorld
{
public:
    VelldocWorld();

    //! Runs velldoc with \a arguments against the service.
    VelldocRun run(const QStringList &arguments, const QByteArray &input = {});

    //! The same without naming the service: whatever the environment says.
    VelldocRun runBare(const QStringList &arguments, const QByteArray &input = {});

    //! Runs it and fails the test, with what it said, unless it returns 0.
    VelldocRun succeed(const QStringList &arguments, const QByteArray &input = {});

    ReferenceService &service() { return *m_service; }
    void restartService();
    //! Each chunk of a large file is answered so many milliseconds late from now on.
    void slowDownChunks(int milliseconds);
    QString baseApi() const { return m_service->baseApi(); }
    static QString program();
    //! Where login keeps what it is told.
    QString configPath() const;

    //! A path below a folder that goes away with the world.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    //! Writes a file there, with the folders above it. \return its path
    QString write(const QString &name, const QByteArray &content) const;
    //! A file of \a bytes in which no two blocks are equal. \return its path
    QString writeUnequalBlocks(const QString &name, qint64 bytes) const;
    static QByteArray read(const QString &path);
    //! The words of \a line, which blanks separate.
    static QStringList words(const char *line);
    //! The same, run against the service.
    VelldocRun runLine(const char *line, const QByteArray &input = {})
    {
        return run(words(line), input);
    }
    //! The same, which must succeed.
    VelldocRun succeedLine(const char *line, const QByteArray &input = {})
    {
        return succeed(words(line), input);
    }
    //! The files below the folder \a path with their contents; folders end with "/".
    static QMap<QString, QByteArray> tree(const QString &path);

    QProcessEnvironment environment;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ReferenceService> m_service;
};
