#include "Fuzzing.h"

#include <document_service/VellDocumentData.h>

#include <VellNetwork/VellBaseApi.h>

#include <QCoreApplication>

// Free names among reserved and cached ones: the search ends, and the result is free.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz_names";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    // No address, so a request fails at once and counts as "not found".
    VellBaseApi::GetInstance().setBaseApi(QStringLiteral("none:/"));

    FuzzedDataProvider input(data, size);
    const QString wanted = takeText(input, 24);
    const QString base = wanted.left(qMax(0, wanted.lastIndexOf(QLatin1Char('.'))));
    VellDocumentData facade;
    QStringList reserved;
    QStringList cached;
    for (int i = 0; i < 12 && input.remaining_bytes() > 0; ++i) {
        // Mostly what the search itself will try.
        QString taken = input.ConsumeBool()
            ? wanted
            : QString(wanted).insert(
                input.ConsumeBool() ? base.size() : wanted.size(),
                QStringLiteral("(%1)").arg(input.ConsumeIntegralInRange(2, 9)));
        if (input.ConsumeBool())
            taken = takeText(input, 12);
        if (input.ConsumeBool()) {
            reserved.append(taken);
            continue;
        }
        VellDocument doc;
        doc._id = QString::number(i);
        doc.name = taken;
        doc.type = QStringLiteral("file");
        doc.parentId = QStringLiteral("folder");
        facade.addDocToCache(doc);
        cached.append(taken);
    }

    QString existingId;
    const QString result =
        facade.getValidDocName(QStringLiteral("folder"), wanted, existingId, QString(), reserved);
    require(!reserved.contains(result) && !cached.contains(result), "the name is free");
    const bool wasFree = !reserved.contains(wanted) && !cached.contains(wanted);
    require(wasFree == (result == wanted), "a free name stays");
    const int dot = wanted.lastIndexOf(QLatin1Char('.'));
    require(dot < 0 || result.endsWith(wanted.mid(dot)), "the suffix stays");
    require(!wasFree || existingId.isEmpty(), "nothing is in the way of a free name");
    return 0;
}
