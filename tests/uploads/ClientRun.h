#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

//! \brief One upload by a process of its own, started at once.
//!
//! What the process prints is the log of its job's signals: "progress BYTES TOTAL", "finishUpload",
//! "document ID FILE", "error CODE", and "silence" when the job has ended without a signal. A
//! request that failed adds "failed STATUS SENTENCE".
class ClientRun
{
public:
    //! \param arguments more for its command line, such as {"--name", "other.bin"}
    ClientRun(const QString &baseApi, const QString &filePath, const QStringList &arguments = {});
    ~ClientRun(); //!< kills

    //! Waits until the process has ended, while events run. \return false when that takes too long
    bool wait();

    //! As `kill -9`; wait() returns soon.
    void kill() { m_process.kill(); }

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    //! After wait(): whether the document was made.
    bool isDone();
    QString documentId();
    QString fileId();

    //! After wait(): the printed lines without progress, joined by "; ".
    QString log();

    //! After wait(): the last line, the outcome; empty for a killed process.
    QString outcome();

private:
    QString word(int number);
    QStringList lines();

    QProcess m_process;
    QStringList m_lines;
};
