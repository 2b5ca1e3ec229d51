#pragma once

#include <QLabel>

namespace desktop {

//! \brief A line of text that ends with an ellipsis where there is no room. The tool tip has the whole of it.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setText(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace desktop
