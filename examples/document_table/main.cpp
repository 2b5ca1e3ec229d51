// Shows a folder of a project as a table. A double click opens a folder, Backspace returns to the folder above.
//   document_table ADDRESS PROJECT [TOKEN]

#include <documents/VellDocuments.h>
#include <models/VellDocumentModel.h>
#include <session/VellSession.h>

#include <QApplication>
#include <QHeaderView>
#include <QMessageBox>
#include <QShortcut>
#include <QTableView>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 3) {
        QTextStream(stderr) << "usage: document_table ADDRESS PROJECT [TOKEN]\n";
        return 2;
    }

    VellSession session;
    VellDocuments documents(&session);
    VellDocumentModel model(&documents);
    QTableView table;
    table.setModel(&model);
    table.setSelectionBehavior(QTableView::SelectRows);
    table.setSortingEnabled(true); // the service sorts
    table.horizontalHeader()->setSectionResizeMode(VellDocumentModel::NameColumn,
                                                   QHeaderView::Stretch);
    table.resize(900, 600);
    table.show();

    const auto tell = [&table](const VellError &error) {
        QMessageBox::warning(&table, QString(), error.text);
    };
    QObject::connect(&session, &VellSession::openFailed, &table, tell);
    QObject::connect(&model, &VellDocumentModel::loadFailed, &table, tell);
    QObject::connect(&session, &VellSession::opened, &table, [&] {
        session.openProject(arguments[2]);
        model.setSource(VellDocumentSource::folder(QString()));
    });

    QStringList above; // the folders above the open one
    QObject::connect(&table, &QTableView::doubleClicked, &table, [&](const QModelIndex &index) {
        if (!index.data(VellModelRole::IsFolder).toBool())
            return;
        above.append(model.source().condition().parentId);
        model.setSource(VellDocumentSource::folder(index.data(VellModelRole::Id).toString()));
    });
    const QShortcut back(QKeySequence(Qt::Key_Backspace), &table);
    QObject::connect(&back, &QShortcut::activated, &table, [&] {
        if (!above.isEmpty())
            model.setSource(VellDocumentSource::folder(above.takeLast()));
    });

    VellConnection connection;
    connection.address = arguments[1];
    connection.accessToken = arguments.value(3);
    session.open(connection);
    return application.exec();
}
