#include "DesktopWorld.h"

#include <QAbstractItemView>
#include <QDir>

using desktop::StartOptions;

void DesktopWorld::start()
{
    StartOptions options;
    options.paths = desktop::AppPaths::below(path(QStringLiteral("home")));
    desktop::SavedConnection connection;
    connection.address = service.baseApi();
    connection.projectId = session.projectId();
    connection.token = m_token;
    connection.proxy = QStringLiteral("none");
    options.connection = connection;
    m_program = std::make_unique<desktop::Desktop>(options);
    m_program->start();
    const bool isShown = QTest::qWaitFor(
        [this] {
            return window()->location() == desktop::Location::folder(QString())
                && !workspace()->session.projectId().isEmpty()
                && !window()->pane()->model()->isLoading();
        },
        WaitMs);
    if (!isShown || !QTest::qWaitForWindowExposed(window()))
        qFatal("the window does not show the top level");
    QApplication::setActiveWindow(window()); // there may be no window manager
}

void DesktopWorld::restart()
{
    window()->close();
    m_program.reset();
    start();
}

QStringList DesktopWorld::shownNames()
{
    QStringList names;
    const VellDocumentModel *const model = window()->pane()->model();
    for (int row = 0; row < model->rowCount(); ++row)
        names.append(model->index(row, 0).data().toString());
    return names;
}

void DesktopWorld::select(const QStringList &names)
{
    auto *const view = find<QAbstractItemView>(QStringLiteral("table"));
    view->setFocus();
    view->clearSelection();
    for (int row = 0; row < view->model()->rowCount(); ++row) {
        const QModelIndex index = view->model()->index(row, 0);
        if (!names.contains(index.data().toString()))
            continue;
        view->selectionModel()->setCurrentIndex(
            index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    if (window()->pane()->selection().size() != names.size())
        qFatal("not all of %s are in the list", qPrintable(names.join(QLatin1Char(','))));
}

QAction *DesktopWorld::action(desktop::ActionId id)
{
    return window()->actionTable()->at(id);
}

QString DesktopWorld::makeFile(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be made", qPrintable(file.fileName()));
    return file.fileName();
}
