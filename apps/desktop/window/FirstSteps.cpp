#include <desktop/window/FirstSteps.h>

#include <desktop/actions/Actions.h>

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace desktop {

FirstSteps::FirstSteps(Actions *actions, QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("firstSteps"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    auto *const layout = new QGridLayout(this);
    layout->setColumnStretch(1, 1);
    auto *const title = new QLabel(tr("First steps"));
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    layout->addWidget(title, 0, 0, 1, 2);
    auto *const close = new QPushButton(tr("&Close"));
    layout->addWidget(close, 0, 2);
    connect(close, &QPushButton::clicked, this, &FirstSteps::closed);
    const auto addStep = [&](int row, const QString &text) {
        layout->addWidget(new QLabel(QStringLiteral("%1.").arg(row)), row, 0);
        auto *const label = new QLabel(text);
        label->setWordWrap(true);
        layout->addWidget(label, row, 1);
    };
    const auto addButton = [&](int row, const QAction *action) {
        auto *const button = new QPushButton(action->iconText());
        connect(button, &QPushButton::clicked, action, &QAction::trigger);
        layout->addWidget(button, row, 2);
    };
    addStep(1,
            tr("Connect to the service of your project, or use the documents of this computer."));
    addButton(1, actions->at(ActionId::Connect));
    addStep(2, tr("Upload files and folders, or drop them onto the list."));
    addButton(2, actions->at(ActionId::UploadFiles));
    addStep(3,
            tr("Open a document with a double click. When you save it in its program, you can "
               "store it as a new version."));
}

} // namespace desktop
