#include <desktop/information/InformationPanel.h>

#include <desktop/information/Preview.h>
#include <desktop/window/Rights.h>

#include <documents/VellDocumentStore.h>
#include <documents/VellDocuments.h>
#include <file_types/FileTypes.h>
#include <session/VellSession.h>

#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <utility>

namespace desktop {

namespace {

constexpr int RemarkLines = 4;

QString rightsText(const VellDocument &document)
{
    const std::pair<QString, QString> names[] = {
        {rights::download(), InformationPanel::tr("download")},
        {rights::upload(), InformationPanel::tr("upload")},
        {rights::edit(), InformationPanel::tr("change")},
        {rights::remove(), InformationPanel::tr("delete")},
    };
    QStringList granted;
    for (const auto &[right, name] : names) {
        if (document.auths.value(right))
            granted.append(name);
    }
    return granted.isEmpty() ? InformationPanel::tr("none") : granted.join(QStringLiteral(", "));
}

} // namespace

InformationPanel::InformationPanel(VellDocuments *documents, QWidget *parent)
    : QWidget(parent), m_documents(documents), m_area(new QScrollArea), m_page(new QWidget),
      m_nothing(new QLabel), m_preview(new Preview(documents->session())), m_name(new QLabel)
{
    m_area->setWidgetResizable(true);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidget(m_page);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    m_nothing->setAlignment(Qt::AlignCenter);
    m_nothing->setWordWrap(true);
    layout->addWidget(m_nothing, 1);
    layout->addWidget(m_area, 1);
    m_nothing->setObjectName(QStringLiteral("nothing"));
    buildFields();
    setMinimumWidth(240);
    connect(documents->store(), &VellDocumentStore::documentsChanged, this,
            [this](const QList<VellDocument> &changed) {
                for (const VellDocument &document : changed) {
                    if (document._id == m_document._id)
                        showDocuments({document});
                }
            });
    connect(documents->session(), &VellSession::userNamesChanged, this, [this] {
        if (!m_document._id.isEmpty())
            fill();
    });
    showDocuments({});
}

QLabel *InformationPanel::addField(const QString &title, const QString &name)
{
    auto *const label = new QLabel;
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_form->addRow(title, label);
    return label;
}

void InformationPanel::buildFields()
{
    auto *const layout = new QVBoxLayout(m_page);
    layout->addWidget(m_preview, 0, Qt::AlignHCenter);
    QFont font = m_name->font();
    font.setBold(true);
    m_name->setFont(font);
    m_name->setObjectName(QStringLiteral("informationName"));
    m_name->setTextFormat(Qt::PlainText);
    m_name->setWordWrap(true);
    m_name->setAlignment(Qt::AlignHCenter);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(m_name);
    m_form = new QFormLayout;
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addLayout(m_form);
    m_type = addField(tr("Type"), QStringLiteral("informationKind"));
    m_size = addField(tr("Size"), QStringLiteral("informationSize"));
    m_folder = addField(tr("Folder"), QStringLiteral("informationFolder"));
    m_changed = addField(tr("Changed"), QStringLiteral("informationChanged"));
    m_created = addField(tr("Created"), QStringLiteral("informationMade"));
    m_rights = addField(tr("You may"), QStringLiteral("informationRights"));
    m_links = addField(tr("Links"), QStringLiteral("informationLinks"));
    m_password = new QPushButton;
    m_password->setObjectName(QStringLiteral("password"));
    m_password->setAutoDefault(false);
    m_form->addRow(tr("Password"), m_password);
    connect(m_password, &QPushButton::clicked, this, &InformationPanel::showPassword);
    auto *const title = new QLabel(tr("R&emark"));
    layout->addWidget(title);
    m_remark = new QPlainTextEdit;
    m_remark->setObjectName(QStringLiteral("informationRemark"));
    m_remark->setTabChangesFocus(true);
    m_remark->setFixedHeight(m_remark->fontMetrics().lineSpacing() * RemarkLines + 12);
    title->setBuddy(m_remark);
    layout->addWidget(m_remark);
    m_keepRemark = new QPushButton(tr("Save Remar&k"));
    m_keepRemark->setObjectName(QStringLiteral("keepRemark"));
    layout->addWidget(m_keepRemark, 0, Qt::AlignRight);
    m_versions = new QPushButton(tr("&Versions…"));
    layout->addWidget(m_versions, 0, Qt::AlignLeft);
    layout->addStretch();
    connect(m_remark, &QPlainTextEdit::textChanged, this, [this] {
        m_keepRemark->setEnabled(m_remark->toPlainText() != m_document.remark
                                 && rights::may(m_document, rights::edit()));
    });
    connect(m_keepRemark, &QPushButton::clicked, this,
            [this] { Q_EMIT remarkChanged(m_document, m_remark->toPlainText()); });
    connect(m_versions, &QPushButton::clicked, this,
            [this] { Q_EMIT versionsRequested(m_document); });
}

void InformationPanel::showDocuments(const QList<VellDocument> &documents)
{
    const bool isOne = documents.size() == 1;
    m_area->setVisible(isOne);
    m_nothing->setVisible(!isOne);
    if (!isOne) {
        m_document = VellDocument();
        m_nothing->setText(documents.isEmpty()
                               ? tr("Select a document to see its details.")
                               : tr("%n entries are selected.", nullptr, documents.size()));
        return;
    }
    const VellDocument &document = documents.constFirst();
    const bool isOther = document._id != m_document._id;
    const bool isTyping = !isOther && m_remark->toPlainText() != m_document.remark;
    m_document = document;
    m_preview->showDocument(document);
    if (!isTyping) // typed text must not be lost
        m_remark->setPlainText(document.remark);
    fill();
    if (isOther) {
        m_password->setText(tr("&Show"));
        askForPath();
    }
}

void InformationPanel::fill()
{
    const QLocale locale;
    const bool isFolder = rights::isFolder(m_document);
    const auto event = [&](const QDateTime &time, const QString &user) {
        const QString when = locale.toString(time.toLocalTime(), QLocale::ShortFormat);
        return user.isEmpty() ? when
                              : tr("%1, by %2").arg(when, m_documents->session()->userName(user));
    };
    m_name->setText(m_document.name);
    m_type->setText(isFolder
                        ? tr("Folder")
                        : VellPubDoc::getFileTypeName(VellPubDoc::getFileType(m_document.suffix)));
    m_size->setText(isFolder ? QStringLiteral("–") : locale.formattedDataSize(m_document.fileSize));
    m_changed->setText(event(m_document.updatedAt, m_document.updatedBy));
    m_created->setText(event(m_document.createdAt, m_document.createdBy));
    m_rights->setText(rightsText(m_document));
    int linkCount = 0;
    for (const QStringList &ids : qAsConst(m_document.entity))
        linkCount += ids.size();
    m_links->setText(linkCount == 0 ? tr("none") : tr("%n links", nullptr, linkCount));
    m_versions->setVisible(!isFolder);
    m_remark->setReadOnly(!rights::may(m_document, rights::edit()));
    m_keepRemark->setEnabled(m_remark->toPlainText() != m_document.remark);
}

void InformationPanel::askForPath()
{
    m_folder->setText(QStringLiteral("…"));
    delete m_request;
    m_request = m_documents->foldersAbove(m_document._id)
                    ->then(
                        this,
                        [this](const QList<VellDocument> &folders) {
                            QStringList names;
                            for (const VellDocument &folder : folders)
                                names.append(folder.name);
                            m_folder->setText(QLatin1Char('/') + names.join(QLatin1Char('/')));
                        },
                        [this](const VellError &error) { m_folder->setText(error.text); });
}

void InformationPanel::showPassword()
{
    m_documents->password(m_document._id)
        ->then(
            this,
            [this, id = m_document._id](const QString &password) {
                if (id == m_document._id)
                    m_password->setText(password.isEmpty() ? tr("none") : password);
            },
            [this, id = m_document._id](const VellError &error) {
                if (id == m_document._id)
                    m_password->setText(error.text);
            });
}

} // namespace desktop
