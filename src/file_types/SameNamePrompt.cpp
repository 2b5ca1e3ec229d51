#include <file_types/SameNamePrompt.h>

#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>

int VellPubDoc::showSameNameMsgBox(const QString &fileName, const QString &newName,
                                   bool &applyToLater)
{
    QMessageBox box;
    box.setWindowIcon(QApplication::windowIcon());
    box.setText(QMessageBox::tr("此位置已存在同名文件：") + QLatin1Char('\n') + fileName);
    // Separate parts, so that translators see the same texts as in other versions of the client.
    //: Stands directly before the new name: end it with a blank where words are separated.
    const QString keepBoth = QMessageBox::tr("保留原有文件并将其新文件重命名为");
    box.setInformativeText(QMessageBox::tr("新文件替换已存在的同名文件") + QLatin1Char('\n')
                           + QMessageBox::tr("或") + QLatin1Char('\n') + keepBoth + newName
                           + QMessageBox::tr("？"));

    auto *const applyBox = new QCheckBox(QMessageBox::tr("为之后同名文件执行此操作"));
    box.setCheckBox(applyBox); // takes ownership
    QObject::connect(
        applyBox, &QCheckBox::stateChanged, applyBox,
        [applyBox, &applyToLater] { applyToLater = applyBox->checkState() == Qt::Checked; },
        Qt::DirectConnection);

    box.setStandardButtons(QMessageBox::Ok | QMessageBox::Save | QMessageBox::Discard
                           | QMessageBox::Cancel);
    box.setButtonText(QMessageBox::Ok, QMessageBox::tr("替换"));
    box.setButtonText(QMessageBox::Save, QMessageBox::tr("新增"));
    box.setButtonText(QMessageBox::Discard, QMessageBox::tr("跳过"));
    box.setButtonText(QMessageBox::Cancel, QMessageBox::tr("取消"));
    box.setDefaultButton(QMessageBox::Ok);
    return box.exec();
}
