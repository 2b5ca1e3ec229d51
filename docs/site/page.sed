# What Doxygen needs in a page and other readers do not: a table of contents below the title, and no links to folders.
1{/^# VellDocumentData$/!a\
\
[TOC]
}
s#\[\(examples/[a-z]*\)\]([^)]*)#`\1`#g
