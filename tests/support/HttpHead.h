#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

//! \brief The head of an HTTP message, parsed.
struct HttpHead
{
    HttpHead() = default;

    //! \param text the head without its empty line; more may follow it
    explicit HttpHead(const QByteArray &text);

    //! Returns the size of the head at the start of \a text, including its empty line; -1 if it is incomplete.
    static int sizeIn(const QByteArray &text);

    int status() const { return words.value(1).toInt(); } //!< of a response
    int contentLength() const { return headers.value("content-length").toInt(); }

    QList<QByteArray> words; //!< of the first line
    QMap<QByteArray, QByteArray> headers; //!< names in lower case
};
