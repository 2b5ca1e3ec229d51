#pragma once

#include <QFrame>
#include <QString>

class QLabel;
class QPushButton;

namespace desktop {

//! \brief A bar with a message and one button. Hidden if there is no message.
class MessageBar : public QFrame
{
    Q_OBJECT

public:
    enum class Kind {
        Note,
        Warning,
    };

    //! \param name the object name, for tests and assistive tools
    explicit MessageBar(const QString &name, QWidget *parent = nullptr);

    //! Shows \a text instead of an earlier message.
    //! \param button the text of the button; empty for none
    void say(Kind kind, const QString &text, const QString &button = {});

    QString text() const;

Q_SIGNALS:
    //! The button has been pressed.
    void accepted();
    void closed();

private:
    QLabel *m_icon;
    QLabel *m_text;
    QPushButton *m_button;
};

} // namespace desktop
