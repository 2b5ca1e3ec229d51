#pragma once

#include <QByteArray>
#include <QSettings>
#include <QString>

namespace desktop {

//! \brief The settings except the connections: appearance, language, behaviour.
//!
//! Stored in a file of the user. Belongs to the GUI thread.
class AppSettings
{
public:
    //! The colour scheme.
    enum class ColorScheme {
        System,
        Light,
        Dark,
    };

    //! \param path the path of the file, which is created by the first change
    explicit AppSettings(const QString &path);

    //! Returns "en", "zh_CN", or an empty string for the language of the system.
    QString language() const;
    void setLanguage(const QString &language);

    ColorScheme colorScheme() const;
    void setColorScheme(ColorScheme scheme);

    //! Returns true if saved changes of opened files are stored as new versions without asking.
    bool isSavedWithoutAsking() const;
    void setSavedWithoutAsking(bool on);

    //! Returns true if the page with the first steps has been closed.
    bool isFirstStepsDone() const;
    void setFirstStepsDone(bool on);

    //! Returns the state of a window, a header and so on.
    QByteArray state(const QString &key) const;
    void setState(const QString &key, const QByteArray &state);

private:
    QSettings m_file;
};

} // namespace desktop
