#include <desktop/editing/VersionConflictDialog.h>

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace desktop {

namespace {

QGroupBox *side(const QString &title, const QString &who, const QDateTime &when, qint64 bytes)
{
    const QLocale locale;
    auto *const group = new QGroupBox(title);
    auto *const form = new QFormLayout(group);
    const auto addRow = [form](const QString &label, const QString &text) {
        auto *const value = new QLabel(text);
        value->setTextFormat(Qt::PlainText);
        form->addRow(label, value);
    };
    addRow(VersionConflictDialog::tr("Changed by"), who);
    addRow(VersionConflictDialog::tr("Changed"),
           locale.toString(when.toLocalTime(), QLocale::ShortFormat));
    addRow(VersionConflictDialog::tr("Size"), locale.formattedDataSize(bytes));
    return group;
}

} // namespace

VersionConflictDialog::VersionConflictDialog(const QString &path, const VellDocument &current,
                                             const QString &changedBy, QWidget *parent)
    : QDialog(parent)
{
    const QFileInfo local(path);
    const bool isThere = !current._id.isEmpty();
    setWindowTitle(tr("Conflicting Changes"));
    auto *const layout = new QVBoxLayout(this);
    auto *const intro =
        new QLabel(isThere ? tr("Another user has changed “%1” while you were working on it. "
                                "Nothing has been replaced.")
                                 .arg(local.fileName())
                           : tr("Another user has deleted “%1” while you were working on it.")
                                 .arg(local.fileName()));
    intro->setTextFormat(Qt::PlainText);
    intro->setWordWrap(true);
    layout->addWidget(intro);
    auto *const sides = new QHBoxLayout;
    sides->addWidget(
        side(tr("Your version on this computer"), tr("You"), local.lastModified(), local.size()));
    if (isThere)
        sides->addWidget(
            side(tr("Version on the service"), changedBy, current.updatedAt, current.fileSize));
    layout->addLayout(sides);
    auto *const buttons = new QDialogButtonBox(Qt::Vertical, this);
    const auto add = [&](const QString &text, const QString &name, EditedFiles::Way way) {
        QPushButton *const button = buttons->addButton(text, QDialogButtonBox::AcceptRole);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, [this, way] {
            m_way = way;
            accept();
        });
        return button;
    };
    add(tr("&Keep both: store my version as another document"), QStringLiteral("keepBoth"),
        EditedFiles::Way::KeepBoth)
        ->setDefault(true);
    if (isThere) {
        add(tr("Store my version as the &newest one; the other one stays in the history"),
            QStringLiteral("newVersion"), EditedFiles::Way::NewVersion);
        add(tr("&Discard my version and download the other one"), QStringLiteral("discardMine"),
            EditedFiles::Way::DiscardMine);
    }
    QPushButton *const later =
        buttons->addButton(tr("Decide &later"), QDialogButtonBox::RejectRole);
    connect(later, &QPushButton::clicked, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace desktop
