#include "guided/stepper/PictureDesk.h"

#include "common/ImageFile.h"
#include "db/archive/ImageArchive.h"

#include <valvecell/Extension.h>
#include <valvecell/ICameraPreview.h>
#include <valvecell/ICoreCtrl.h>

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

PictureDesk::PictureDesk(ICoreCtrl* core, QWidget* parent)
    : QObject(parent)
    , m_core(core)
    , m_window(parent)
{
}

bool PictureDesk::canCapture(const QString& cameraKey) const
{
    return m_core && extensionOf<ICameraPreview>(m_core) && m_core->cameraKeys().contains(cameraKey);
}

void PictureDesk::capture(const QString& cameraKey)
{
    auto* preview = canCapture(cameraKey) ? extensionOf<ICameraPreview>(m_core) : nullptr;
    const auto done = [this, cameraKey, own = wish(), slot = m_mailbox.slot()](const QImage& image,
                                                                               const QString& error) {
        slot.post([this, cameraKey, own, image, error] {
            if (!stillWanted(own))
                return;
            if (error.isEmpty() && !image.isNull())
                emit taken(image, cameraKey);
            else
                emit failed(tr("相机“%1”没有图像：%2").arg(cameraKey, error));
        });
    };
    if (!preview || !preview->preview(cameraKey, done))
        emit failed(tr("相机“%1”现在不能取像，请检查连接，或选择图像文件").arg(cameraKey));
}

void PictureDesk::askFile(const QString& home)
{
    const QString archive = home + ImageArchive::folderOf(ImageArchive::Source);
    delete m_chooser;
    m_chooser = new QFileDialog(m_window, tr("选择图像"), QDir(archive).exists() ? archive : QDir::homePath(),
                                tr("图像 (%1)").arg(ImageFile::patterns().join(QLatin1Char(' '))));
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    m_chooser->setOption(QFileDialog::DontUseNativeDialog);
    m_chooser->setFileMode(QFileDialog::ExistingFile);
    connect(m_chooser, &QFileDialog::fileSelected, this, &PictureDesk::open);
    m_chooser->open();
}

void PictureDesk::open(const QString& path)
{
    m_background.run([path] { return ImageFile::read(path); },
                     [this, own = wish()](const ImageFile& file) {
                         if (!stillWanted(own))
                             return;
                         if (file.image.isNull())
                             emit failed(tr("未能读取图像：%1").arg(file.problem()));
                         else
                             emit taken(file.image, QFileInfo(file.path).fileName());
                     });
}
