#pragma once

#include <transfer/VellTransferQueue.h>

#include <QAbstractTableModel>
#include <QHash>

namespace desktop {

//! \brief The transfers of a queue as a table, in the order of adding.
class TransferModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        NameColumn,
        StateColumn,
        ProgressColumn,
        SizeColumn,
        TargetColumn,
        ColumnCount,
    };

    enum Role {
        IdRole = Qt::UserRole, //!< qint64
        StateRole, //!< VellTransferState as an int
        PercentRole, //!< 0 to 100; invalid if it is not known
    };

    //! \param queue must outlive the model
    explicit TransferModel(VellTransferQueue *queue, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    //! Returns the text for the state of \a transfer, with the reason of a failure.
    static QString stateText(const VellTransfer &transfer);

private:
    void add(const QVector<qint64> &ids);
    void remove(const QVector<qint64> &ids);
    void change(const QVector<qint64> &ids);

    VellTransferQueue *const m_queue;
    QVector<qint64> m_ids;
    QHash<qint64, int> m_rows;
};

} // namespace desktop
