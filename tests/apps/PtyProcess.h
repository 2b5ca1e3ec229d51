#pragma once

#include <QByteArray>
#include <QProcess>

//! \brief A process whose terminal is ours: what it prints there can be read, and keys be pressed.
class PtyProcess : public QProcess
{
    Q_OBJECT

public:
    explicit PtyProcess(int columns = 80);
    ~PtyProcess() override;

    //! Everything that has been printed so far.
    QByteArray output();

    //! Waits until \a text has been printed.
    bool waitForText(const QByteArray &text);

    void press(const QByteArray &keys) const;

    //! Waits for the end. \return the exit code, -1 when it did not end by itself
    int waitForEnd();

protected:
    void setupChildProcess() override;

private:
    void readMore();

    int m_master = -1;
    int m_slave = -1;
    QByteArray m_output;
};
