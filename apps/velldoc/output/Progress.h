#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QPair>
#include <QString>

namespace velldoc {

class Output;

//! \brief One line on the terminal that tells how far a transfer is, how fast it goes and how long it will take.
//!
//! Without a terminal on the standard error there are plain lines, one for every tenth of what takes longer than a second, and
//! none with JSON.
class Progress
{
public:
    explicit Progress(const Output &output);
    ~Progress(); //!< clears the line
    Q_DISABLE_COPY(Progress)

    //! A new figure from 0 to \a totalBytes; the rate is measured anew.
    void begin(const QString &what, qint64 totalBytes);

    void setText(const QString &what);

    //! \a doneBytes beyond the total count as the total, and 100 % is kept for end().
    void update(qint64 doneBytes);

    //! The transfer is complete.
    void end();

    //! Takes the line away, so that something else can be printed.
    void clear();

private:
    void draw();
    void drawPlain();
    int percent() const;
    static void show(const QString &line);
    QString line(int width) const;
    QString figures() const;
    qint64 bytesPerSecond() const;

    const bool m_isShown;
    const bool m_isPlain;
    int m_plainTenths = 0; //!< that have been told of
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
