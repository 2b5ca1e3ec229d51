#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

//! \brief The path of a document or a folder in the project, as the user writes it.
//!
//! "/Drawings/Level 1/plan.dwg" consists of names from the top level; the first "/" is optional. "id:…" is an identifier, and
//! "id:…/Level 1" an entry below it. Empty and "." segments are ignored, ".." removes the segment before it.
class RemotePath
{
public:
    static RemotePath parse(const QString &text);

    QString id() const
    {
        return m_id;
    } //!< the folder at the start of the path; empty for the top level
    QStringList names() const { return m_names; }
    bool isTop() const { return m_id.isEmpty() && m_names.isEmpty(); }
    bool isBareId() const { return !m_id.isEmpty() && m_names.isEmpty(); }
    bool endsWithSlash() const { return m_endsWithSlash; } //!< then it must be a folder

    QString name() const { return m_names.isEmpty() ? QString() : m_names.constLast(); }
    RemotePath parent() const; //!< the path without its last name
    RemotePath child(const QString &name) const;
    QString text() const; //!< can be read by parse()

private:
    QString m_id;
    QStringList m_names;
    bool m_endsWithSlash = false;
};

} // namespace velldoc
