#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <vector>

//! \brief Which paths of a tree count: see VellSyncOptions::include and VellSyncOptions::exclude.
class SyncFilter
{
public:
    SyncFilter(const QStringList &include, const QStringList &exclude);

    //! Whether the file \a path is left out. Nothing is asked about what is in an excluded folder.
    bool excludesFile(const QString &path) const;
    bool excludesFolder(const QString &path) const;

    bool hasIncludes() const { return !m_include.empty(); }

private:
    struct Pattern
    {
        explicit Pattern(QString text);
        bool matches(const QString &path, bool isFolder) const;

        bool isNegated = false;
        bool isForFolders = false;
        bool isForPath = false; // else for the last name of it
        QRegularExpression expression;
    };

    bool isExcluded(const QString &path, bool isFolder) const;

    std::vector<Pattern> m_include;
    std::vector<Pattern> m_exclude;
};
