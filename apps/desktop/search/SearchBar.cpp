#include <desktop/search/SearchBar.h>

#include <documents/VellDocuments.h>
#include <session/VellSession.h>

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>

#include <algorithm>

namespace desktop {

namespace {

constexpr int TypingMs = 250;
constexpr int ShortestText = 7; // in characters

} // namespace

SearchBar::SearchBar(VellDocuments *documents, QWidget *parent)
    : QWidget(parent), m_documents(documents), m_line(new QLineEdit)
{
    m_line->setObjectName(QStringLiteral("search"));
    m_line->setPlaceholderText(tr("Search"));
    m_line->setAccessibleName(tr("Search"));
    m_line->setClearButtonEnabled(true);
    m_line->setMinimumWidth(140);
    m_line->setMaximumWidth(260);
    m_line->installEventFilter(this);
    buildFilters();
    m_typing.setSingleShot(true);
    m_typing.setInterval(TypingMs);
    connect(&m_typing, &QTimer::timeout, this, &SearchBar::search);
    connect(m_line, &QLineEdit::textChanged, &m_typing, QOverload<>::of(&QTimer::start));
    connect(m_line, &QLineEdit::returnPressed, this, &SearchBar::search);
    const VellSession *const session = documents->session();
    connect(session, &VellSession::projectChanged, this, &SearchBar::fillUsers);
    fillUsers();
    hide();
}

void SearchBar::buildFilters()
{
    using Kind = SearchTerms::Kind;
    using Period = SearchTerms::Period;
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    m_kind = new QComboBox;
    m_kind->setObjectName(QStringLiteral("kind"));
    m_kind->setAccessibleName(tr("Type"));
    m_kind->addItem(tr("All types"), int(Kind::Any));
    m_kind->addItem(tr("Folders"), int(Kind::Folders));
    m_kind->addItem(tr("Pictures"), int(Kind::Pictures));
    m_kind->addItem(tr("Office documents"), int(Kind::Office));
    m_kind->addItem(tr("Drawings"), int(Kind::Drawings));
    m_kind->addItem(tr("Video and sound"), int(Kind::Media));
    m_kind->addItem(tr("Archives"), int(Kind::Archives));
    m_period = new QComboBox;
    m_period->setObjectName(QStringLiteral("period"));
    m_period->setAccessibleName(tr("Time of the last change"));
    m_period->addItem(tr("Any time"), int(Period::Any));
    m_period->addItem(tr("Today"), int(Period::Today));
    m_period->addItem(tr("Last 7 days"), int(Period::Week));
    m_period->addItem(tr("Last 30 days"), int(Period::Month));
    m_period->addItem(tr("Last 12 months"), int(Period::Year));
    m_user = new QComboBox;
    m_user->setObjectName(QStringLiteral("user"));
    m_user->setAccessibleName(tr("Changed by"));
    m_below = new QCheckBox(tr("Only &in this folder"));
    m_below->setObjectName(QStringLiteral("below"));
    for (QComboBox *const box : {m_kind, m_period, m_user}) {
        // May become narrow; otherwise the list on the left would.
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(ShortestText);
        box->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        layout->addWidget(box);
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &SearchBar::search);
    }
    layout->addWidget(m_below);
    auto *const save = new QToolButton;
    save->setObjectName(QStringLiteral("saveSearch"));
    save->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    save->setToolTip(tr("Save Search…"));
    save->setAccessibleName(tr("Save Search…"));
    save->setAutoRaise(true);
    save->setFocusPolicy(Qt::TabFocus);
    layout->addWidget(save);
    layout->addStretch();
    connect(save, &QToolButton::clicked, this, [this] { Q_EMIT saveRequested(terms()); });
    connect(m_below, &QCheckBox::toggled, this, &SearchBar::search);
}

void SearchBar::fillUsers()
{
    const QSignalBlocker noSearch(m_user);
    m_user->clear();
    m_user->addItem(tr("Anybody"));
    VellSession *const session = m_documents->session();
    if (session->projectId().isEmpty())
        return;
    m_user->addItem(tr("Me"), session->user().id);
    session->loadUserNames()->then(this, [this, session](const QHash<QString, QString> &names) {
        QList<QPair<QString, QString>> users;
        for (auto user = names.cbegin(); user != names.cend(); ++user) {
            if (user.key() != session->user().id)
                users.append({user.value(), user.key()});
        }
        std::sort(users.begin(), users.end());
        for (const auto &user : qAsConst(users))
            m_user->addItem(user.first, user.second);
    });
}

void SearchBar::setFolder(const QString &id)
{
    m_folderId = id;
    m_below->setEnabled(!id.isEmpty());
}

SearchTerms SearchBar::terms() const
{
    SearchTerms terms;
    terms.text = m_line->text();
    terms.kind = SearchTerms::Kind(m_kind->currentData().toInt());
    terms.period = SearchTerms::Period(m_period->currentData().toInt());
    terms.userId = m_user->currentData().toString();
    if (m_below->isChecked())
        terms.folderId = m_folderId;
    return terms;
}

void SearchBar::search()
{
    m_typing.stop();
    const SearchTerms wanted = terms();
    if (!wanted.isEmpty()) {
        m_isActive = true;
        Q_EMIT searched(wanted);
    } else if (m_isActive) {
        m_isActive = false;
        Q_EMIT left();
    }
}

void SearchBar::showTerms(const SearchTerms &terms)
{
    const QSignalBlocker noKind(m_kind);
    const QSignalBlocker noPeriod(m_period);
    const QSignalBlocker noUser(m_user);
    const QSignalBlocker noBelow(m_below);
    if (m_line->text() != terms.text) // otherwise the cursor would move while the user is typing
        m_line->setText(terms.text);
    m_typing.stop();
    m_kind->setCurrentIndex(m_kind->findData(int(terms.kind)));
    m_period->setCurrentIndex(m_period->findData(int(terms.period)));
    m_user->setCurrentIndex(terms.userId.isEmpty() ? 0 : m_user->findData(terms.userId));
    m_below->setChecked(!terms.folderId.isEmpty());
    if (!terms.folderId.isEmpty())
        setFolder(terms.folderId);
    m_isActive = !terms.isEmpty();
}

void SearchBar::reset()
{
    showTerms({});
}

bool SearchBar::eventFilter(QObject *watched, QEvent *event)
{
    const bool isEscape = event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (!isEscape)
        return QWidget::eventFilter(watched, event);
    reset();
    Q_EMIT left();
    return true;
}

} // namespace desktop
