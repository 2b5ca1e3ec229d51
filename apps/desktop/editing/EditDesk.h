#pragma once

#include <QObject>

class QWidget;
class VellSession;
struct VellDocument;

namespace desktop {

class AppSettings;
class EditedFiles;
class MessageBar;

//! \brief Asks the user whether the changes of opened files are uploaded.
class EditDesk : public QObject
{
    Q_OBJECT

public:
    //! \param bar for the question; \a bar, \a files, \a settings, \a session and \a window must outlive this object
    EditDesk(EditedFiles *files, AppSettings *settings, VellSession *session, MessageBar *bar,
             QWidget *window);

Q_SIGNALS:
    //! \param text a sentence about a success
    void done(const QString &text);
    //! \param text a sentence about a failure
    void failed(const QString &text);

private:
    void onChanged(const QString &path);
    void ask();
    void storeAll();
    void showConflict(const QString &path, const VellDocument &current);

    EditedFiles *const m_files;
    AppSettings *const m_settings;
    VellSession *const m_session;
    MessageBar *const m_bar;
    QWidget *const m_window;
};

} // namespace desktop
