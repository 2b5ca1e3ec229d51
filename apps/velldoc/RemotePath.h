#pragma once

#include <QString>
#include <QStringList>

namespace velldoc {

//! \brief How a user names a document or a folder of the project.
//!
//! "/Drawings/Level 1/plan.dwg", by names from the top level; the first "/" may be left out. "id:…" is an identifier, and
//! "id:…/Level 1" goes on from there. Empty and "." segments say nothing, ".." takes the segment before it back.
class RemotePath
{
public:
    static RemotePath parse(const QString &text);

    QString id() const { return m_id; } //!< where the names start; empty: the top level
    QStringList names() const { return m_names; }
    bool isTop() const { return m_id.isEmpty() && m_names.isEmpty(); }
    bool isBareId() const { return !m_id.isEmpty() && m_names.isEmpty(); }
    bool endsWithSlash() const { return m_endsWithSlash; } //!< so it must be a folder

    QString name() const { return m_names.isEmpty() ? QString() : m_names.constLast(); }
    RemotePath parent() const; //!< the same without its last name
    RemotePath child(const QString &name) const;
    QString text() const; //!< as parse() reads it

private:
    QString m_id;
    QStringList m_names;
    bool m_endsWithSlash = false;
};

} // namespace velldoc
