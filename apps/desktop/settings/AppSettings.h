#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

namespace desktop {

//! \brief What the program remembers beside the connections: looks, language, habits.
//!
//! Kept in a file of the user. Belongs to the user-interface thread.
class AppSettings
{
public:
    //! How the colours of the window are chosen.
    enum class ColorScheme {
        System,
        Light,
        Dark,
    };

    //! \param path of the file; made with the first change
    explicit AppSettings(const QString &path);

    //! "en", "zh_CN", or empty for the language of the system.
    QString language() const;
    void setLanguage(const QString &language);

    ColorScheme colorScheme() const;
    void setColorScheme(ColorScheme scheme);

    //! Whether a file that was opened and saved becomes a new version without a question.
    bool isSavedWithoutAsking() const;
    void setSavedWithoutAsking(bool on);

    //! Whether the page with the first steps has been closed.
    bool isFirstStepsDone() const;
    void setFirstStepsDone(bool on);

    //! The state of a window, a header and so on.
    QByteArray state(const QString &key) const;
    void setState(const QString &key, const QByteArray &state);

private:
    QSettings m_file;
};

} // namespace desktop
