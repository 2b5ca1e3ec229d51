#!/usr/bin/env bash
# The shared library exports the documented surface and nothing else.
#   exported_symbols.sh NM LIBRARY
#   exported_symbols.sh OBJDUMP LIBRARY.dll
set -euo pipefail

exports() {
    case $2 in
        *.dll) "$1" --private-headers "$2" | sed -nE 's/^[[:space:]]+\[ *[0-9]+\] ([A-Za-z_][A-Za-z0-9_]*)$/\1/p' | c++filt ;;
        # Without the weak ones: inline functions and type information of Qt that the compiler has emitted.
        *) "$1" --dynamic --demangle --defined-only "$2" | grep -vE ' W | V typeinfo (name )?for Q' \
            | sed -E 's/^[0-9a-f]* *[A-Za-z] //' ;;
    esac
}

classes='VellDocumentData|AsyncCreateDocument|AsyncGetRecent|AsyncGetDocInfo|AsyncRenameDoc'
constants='(FILE_TYPE|SUFFIX|KEY)_[0-9A-Z_]+|[A-Z]+_SUFFIXES|SIZE_LIMIT_TEXT|MONTH_FORMAT_TEXT'
documented="^(($classes)::.*|VellPubDoc::[A-Za-z0-9]+\(.*|(vtable|typeinfo|typeinfo name) for ($classes)|$constants|__odr_asan\..*|__bss_start|_edata|_end)$"

symbols=$(exports "$1" "$2")
if strangers=$(grep -vE "$documented" <<<"$symbols"); then
    printf 'FAIL!  : exported, but not documented:\n%s\n' "$strangers"
    exit 1
fi
for name in 'VellDocumentData::instance()' 'AsyncCreateDocument::createDocument(' \
    'AsyncGetRecent::getRecentDocs(' 'AsyncGetDocInfo::getDocInfo(' 'AsyncRenameDoc::renameDoc(' \
    'VellPubDoc::jsonToDocObject(' 'VellPubDoc::jsonToDocHistoryObject(' 'VellPubDoc::doc2JsonString(' \
    'VellPubDoc::docLite2Document(VellDocumentLite' 'VellPubDoc::docLite2Document(QList<' \
    'VellPubDoc::document2DocLite(' 'VellPubDoc::getVellDocument(QFileInfo' \
    'VellPubDoc::getVellDocument(QString' 'VellPubDoc::makeDocListTree(' \
    'VellPubDoc::getFileType(' 'VellPubDoc::getFileTypeName(' 'VellPubDoc::getFileTypeIconPath(' \
    'VellPubDoc::getFileTypeIcon(' 'VellPubDoc::getFileIcon(' 'VellPubDoc::getNameFilters(' \
    'VellPubDoc::showSameNameMsgBox(' FILE_TYPE_IMAGE SUFFIX_7Z DRAWING_SUFFIXES KEY_FILE_SIZE \
    SIZE_LIMIT_TEXT; do
    grep -qF "$name" <<<"$symbols" || { echo "FAIL!  : not exported: $name"; exit 1; }
done
echo "PASS   : $(wc -l <<<"$symbols") symbols, all documented"
