#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

namespace velldoc {

class Output;

//! \brief The progress, the speed and the remaining time of a transfer in one line on the terminal.
//!
//! If the standard error is not a terminal, it prints a line for each tenth of a transfer that takes longer than a second, and
//! nothing with JSON.
class Progress
{
public:
    explicit Progress(const Output &output);
    ~Progress(); //!< clears the line
    Q_DISABLE_COPY(Progress)

    //! Starts a new progress from 0 to \a totalBytes, and a new measurement of the speed.
    void begin(const QString &what, qint64 totalBytes);

    void setText(const QString &what);

    //! Sets the progress. \a doneBytes is limited to the total; 100 % is shown only by end().
    void update(qint64 doneBytes);

    //! Shows that the transfer is complete.
    void end();

    //! Clears the line, so that other text can be printed.
    void clear();

private:
    void draw();
    void drawPlain();
    int percent() const;
    static void show(const QString &line);
    QString line(int width) const;
    QStringList figures() const; //!< the most important first
    qint64 bytesPerSecond() const;

    const bool m_isShown;
    const bool m_isPlain;
    int m_plainTenths = 0; //!< printed so far
    QString m_what;
    qint64 m_totalBytes = 0;
    qint64 m_doneBytes = 0;
    bool m_isComplete = false;
    bool m_isDrawn = false;
    QElapsedTimer m_clock; //!< since begin()
    QElapsedTimer m_sinceDrawn;
    QList<QPair<qint64, qint64>> m_samples; //!< milliseconds and bytes of the last seconds
};

} // namespace velldoc
