#pragma once

#include <client/ClientWorld.h>

#include <desktop/actions/Actions.h>
#include <desktop/app/Desktop.h>
#include <desktop/lists/DocumentPane.h>
#include <desktop/window/MainWindow.h>

#include <QApplication>
#include <QTemporaryDir>

#include <memory>

//! The UTF-8 \a texts as a list.
template <typename... Texts>
QStringList list(Texts... texts)
{
    return {QString::fromUtf8(texts)...};
}

//! \brief The program on the service of a ClientWorld, whose own session is another user of the same project.
class DesktopWorld : public ClientWorld
{
public:
    //! The program signs in with \a token; as anybody, on a service without users, unless set.
    void setToken(const QString &token) { m_token = token; }

    desktop::Desktop &program() { return *m_program; }
    desktop::MainWindow *window() { return m_program->window(); }
    desktop::Workspace *workspace() { return m_program->workspace(); }

    //! Starts the program, and waits until its window shows the top level.
    void start();

    //! Ends the program and starts it again on the same files.
    void restart();

    //! The names in the list, from top to bottom.
    QStringList shownNames();

    //! Selects the entries called \a names, and puts the focus into the list.
    void select(const QStringList &names);

    //! The visible widget \a name of the window or of a dialog of it; waited for. Ends the test program if there is none.
    template <typename Widget>
    Widget *find(const QString &name)
    {
        Widget *found = nullptr;
        const bool isThere = QTest::qWaitFor(
            [&] {
                const auto all = QApplication::allWidgets();
                for (QWidget *const widget : all) {
                    if (widget->objectName() == name && widget->isVisible())
                        found = qobject_cast<Widget *>(widget);
                }
                return found != nullptr;
            },
            WaitMs);
        if (!isThere)
            qFatal("there is no %s", qPrintable(name));
        return found;
    }

    QAction *action(desktop::ActionId id);

    //! The path of a file with \a content below the folder of the test.
    QString makeFile(const QString &name, const QByteArray &content = "content") const;
    QString path(const QString &name) const { return m_local.filePath(name); }

private:
    QTemporaryDir m_local;
    QString m_token;
    std::unique_ptr<desktop::Desktop> m_program;
};
