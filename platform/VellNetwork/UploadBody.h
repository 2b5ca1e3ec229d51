#pragma once

#include <QIODevice>
#include <QPointer>

#include <functional>

//! \brief A request's body on its way out, as Qt reads it.
//!
//! Qt sends a request again by itself when the connection is closed before an answer has come, whatever
//! the verb, and takes up the body from its start for that. The service may have made the change by
//! then, so a body of which anything has been read can be taken up again only when the rule says so.
//! So can one of no bytes, of which nothing can be read.
//!
//! A source that fails or ends before its size is never passed on as the end of the body: the body
//! then stands still, and broken() tells.
class UploadBody : public QIODevice
{
    Q_OBJECT

public:
    //! Reads from \a source, which is open, has a size and stays with its owner.
    explicit UploadBody(QIODevice *source, QObject *parent = nullptr);

    //! Asked, on this object's thread, whether the request may be sent again; never unless set.
    void setResendRule(const std::function<bool()> &rule) { m_mayResend = rule; }

    bool isSequential() const override { return false; }
    qint64 size() const override { return m_size; }
    bool reset() override;

Q_SIGNALS:
    void moved();
    void broken();
    void resendRefused();

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 maxSize) override;

private:
    QPointer<QIODevice> m_source;
    qint64 m_size;
    bool m_taken;
    std::function<bool()> m_mayResend;
    bool m_broken = false;
};
