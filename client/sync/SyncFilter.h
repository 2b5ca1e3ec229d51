#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <vector>

//! \brief Selects paths of a tree: see VellSyncOptions::include and VellSyncOptions::exclude.
class SyncFilter
{
public:
    SyncFilter(const QStringList &include, const QStringList &exclude);

    //! Returns true if the file \a path is excluded. Not called for the contents of excluded folders.
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
        bool isForPath = false; // otherwise for the name only
        QRegularExpression expression;
    };

    bool isExcluded(const QString &path, bool isFolder) const;

    std::vector<Pattern> m_include;
    std::vector<Pattern> m_exclude;
};
