#pragma once

#include <QWidget>

class QAbstractItemModel;
class QLabel;
class QPushButton;

namespace desktop {

//! \brief The notice of a list without rows: the reason, and what the user can do.
class NoticePage : public QWidget
{
    Q_OBJECT

public:
    //! \param model handles drops, as on an empty place of its view
    explicit NoticePage(QAbstractItemModel *model, QWidget *parent = nullptr);

    //! \param button the text of the button; empty for none
    void say(const QString &title, const QString &text, const QString &button = {});

    QString title() const;

Q_SIGNALS:
    void accepted();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    QAbstractItemModel *const m_model;
    QLabel *m_title;
    QLabel *m_text;
    QPushButton *m_button;
};

} // namespace desktop
