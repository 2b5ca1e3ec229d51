#include <desktop/lists/NameDelegate.h>

#include <models/VellModelRole.h>

#include <QLineEdit>

namespace desktop {

void NameDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    auto *const line = qobject_cast<QLineEdit *>(editor);
    if (!line || line->isModified())
        return; // news about the document must not take away what is typed
    QStyledItemDelegate::setEditorData(editor, index);
    const QString name = line->text();
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0 || index.data(VellModelRole::IsFolder).toBool())
        return;
    // The view selects everything after this.
    QMetaObject::invokeMethod(
        line, [line, dot] { line->setSelection(0, dot); }, Qt::QueuedConnection);
}

void NameDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (m_size.isValid())
        option->displayAlignment = Qt::AlignHCenter | Qt::AlignTop; // next to the icon
}

QSize NameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return m_size.isValid() ? m_size : QStyledItemDelegate::sizeHint(option, index);
}

} // namespace desktop
