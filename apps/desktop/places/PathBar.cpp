#include <desktop/places/PathBar.h>

#include <desktop/window/Rights.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QToolTip>

namespace desktop {

namespace {

constexpr int LongestButton = 220;

} // namespace

PathBar::PathBar(VellDocuments *documents, QWidget *parent)
    : QStackedWidget(parent), m_documents(documents), m_line(new QLineEdit)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setMinimumWidth(160);
    auto *const page = new QWidget;
    m_buttons = new QHBoxLayout(page);
    m_buttons->setContentsMargins({});
    m_buttons->setSpacing(0);
    addWidget(page);
    m_line->setObjectName(QStringLiteral("path"));
    m_line->setAccessibleName(tr("Path"));
    m_line->installEventFilter(this);
    connect(m_line, &QLineEdit::returnPressed, this, &PathBar::open);
    addWidget(m_line);
    connect(documents->store(), &VellDocumentStore::documentsChanged, this,
            [this](const QList<VellDocument> &changed) {
                bool isShown = false;
                for (const VellDocument &document : changed) {
                    for (VellDocument &folder : m_folders) {
                        if (folder._id == document._id && folder.name != document.name) {
                            folder = document;
                            isShown = true;
                        }
                    }
                }
                if (isShown)
                    showFolders(QList<VellDocument>(m_folders));
            });
}

void PathBar::showFolder(const QString &id, const QString &rootTitle)
{
    m_rootTitle = rootTitle;
    delete m_request;
    if (id.isEmpty()) {
        showFolders({});
        return;
    }
    // Known folders are shown at once; the folders above follow.
    const std::optional<VellDocument> known = m_documents->store()->document(id);
    if (known && (m_folders.isEmpty() || m_folders.constLast()._id != id))
        showFolders(known->parentId.isEmpty() ? QList<VellDocument>{*known}
                                              : QList<VellDocument>{VellDocument(), *known});
    m_request = m_documents->foldersAbove(id)->then(this, [this, id](QList<VellDocument> folders) {
        if (const std::optional<VellDocument> folder = m_documents->store()->document(id))
            folders.append(*folder);
        showFolders(folders);
    });
}

void PathBar::showTitle(const QString &title)
{
    delete m_request;
    m_rootTitle = title;
    showFolders({});
}

void PathBar::showFolders(const QList<VellDocument> &folders)
{
    m_folders = folders;
    while (QLayoutItem *const item = m_buttons->takeAt(0)) {
        if (item->widget()) {
            item->widget()->hide();
            item->widget()->deleteLater(); // it may be the pressed button
        }
        delete item;
    }
    addButton(m_rootTitle, QString());
    for (const VellDocument &folder : folders) {
        auto *const arrow = new QLabel(isRightToLeft() ? QStringLiteral("‹") : QStringLiteral("›"));
        m_buttons->addWidget(arrow);
        if (folder._id.isEmpty())
            m_buttons->addWidget(new QLabel(QStringLiteral("…")));
        else
            addButton(folder.name, folder._id);
    }
    m_buttons->addStretch();
}

void PathBar::addButton(const QString &text, const QString &id)
{
    auto *const button = new QToolButton;
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    QString shown = fontMetrics().elidedText(text, Qt::ElideMiddle, LongestButton);
    button->setText(shown.replace(QLatin1Char('&'), QLatin1String("&&")));
    button->setToolTip(text);
    button->setAccessibleName(tr("Open folder %1").arg(text));
    connect(button, &QToolButton::clicked, this, [this, id] { Q_EMIT folderRequested(id); });
    m_buttons->addWidget(button);
}

QString PathBar::path() const
{
    QString path;
    for (const VellDocument &folder : m_folders)
        path += QLatin1Char('/') + folder.name;
    return path.isEmpty() ? QStringLiteral("/") : path;
}

void PathBar::edit()
{
    m_line->setText(path());
    setCurrentWidget(m_line);
    m_line->setFocus();
    m_line->selectAll();
}

bool PathBar::eventFilter(QObject *watched, QEvent *event)
{
    const bool isEscape = event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (isEscape || event->type() == QEvent::FocusOut)
        endEditing();
    return isEscape || QStackedWidget::eventFilter(watched, event);
}

void PathBar::endEditing()
{
    if (currentWidget() != m_line)
        return;
    setCurrentIndex(0);
    Q_EMIT editingEnded();
}

void PathBar::open()
{
    const QStringList names = m_line->text().trimmed().split(QLatin1Char('/'), Qt::SkipEmptyParts);
    openNext(QString(), names);
}

void PathBar::openNext(const QString &folderId, QStringList names)
{
    if (names.isEmpty()) {
        endEditing();
        Q_EMIT folderRequested(folderId);
        return;
    }
    delete m_request;
    const QString name = names.takeFirst();
    m_request = m_documents->find(folderId, name)
                    ->then(
                        this,
                        [=](const std::optional<VellDocument> &found) {
                            m_request = nullptr;
                            if (!found) {
                                refuse(tr("There is no “%1”.").arg(name));
                            } else if (rights::isFolder(*found)) {
                                openNext(found->_id, names);
                            } else if (names.isEmpty()) {
                                endEditing();
                                Q_EMIT documentRequested(*found);
                            } else {
                                refuse(tr("“%1” is not a folder.").arg(name));
                            }
                        },
                        [this](const VellError &error) {
                            m_request = nullptr;
                            refuse(error.text);
                        });
}

void PathBar::refuse(const QString &text)
{
    m_line->setToolTip(text);
    QToolTip::showText(m_line->mapToGlobal(QPoint(0, m_line->height())), text, m_line);
    m_line->selectAll();
}

} // namespace desktop
