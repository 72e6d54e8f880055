#include "results/parts/PartPictures.h"

#include "common/ImageFile.h"
#include "results/parts/PartTableModel.h"
#include "results/parts/PartTexts.h"

#include <QFileInfo>
#include <QPainter>

namespace {

constexpr int picturesKept = 600;
constexpr int mostRequests = 96; // what was scrolled past is not read
constexpr int cellMargin = 5;
constexpr int captionLines = 2;

} // namespace

PartPictures::PartPictures(PartTableModel& parts, QObject* parent)
    : QAbstractTableModel(parent)
    , m_parts(parts)
    , m_known(picturesKept)
    , m_reading(Background::AtEnd::Abandon)
{
    connect(&parts, &QAbstractItemModel::modelAboutToBeReset, this, &PartPictures::beginResetModel);
    connect(&parts, &QAbstractItemModel::modelReset, this, &PartPictures::endResetModel);
    connect(&parts, &QAbstractItemModel::rowsInserted, this, [this] {
        beginResetModel();
        endResetModel();
    });
    connect(&parts, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& first, const QModelIndex& last) {
        const QModelIndex lastPlace = placeOf(last.row());
        emit dataChanged(index(placeOf(first.row()).row(), 0), index(lastPlace.row(), m_abreast - 1));
    });
}

void PartPictures::setHome(const QString& home)
{
    m_home = home;
    ++m_number;
    m_known.clear();
    m_requested.clear();
    m_reading.clear();
}

void PartPictures::setAbreast(int columns)
{
    if (columns == m_abreast || columns < 1)
        return;
    beginResetModel();
    m_abreast = columns;
    endResetModel();
}

int PartPictures::partAt(const QModelIndex& index) const
{
    const int part = index.isValid() ? index.row() * m_abreast + index.column() : -1;
    return part < m_parts.rowCount() ? part : -1;
}

QModelIndex PartPictures::placeOf(int part) const
{
    return part < 0 ? QModelIndex() : index(part / m_abreast, part % m_abreast);
}

int PartPictures::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : (m_parts.rowCount() + m_abreast - 1) / m_abreast;
}

int PartPictures::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_abreast;
}

Qt::ItemFlags PartPictures::flags(const QModelIndex& index) const
{
    return partAt(index) >= 0 ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

QVariant PartPictures::data(const QModelIndex& index, int role) const
{
    const int at = partAt(index);
    const PartRow* part = at >= 0 ? m_parts.wantedAt(at) : nullptr;
    if (!part)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return captionOf(*part);
    case Qt::ToolTipRole:
        return PartTexts::reason(*part);
    case Qt::UserRole:
        return int(part->part.outcome);
    case Qt::DecorationRole: {
        const Small* known = wanted(*part, at);
        return known ? QVariant(known->image) : QVariant();
    }
    default:
        return {};
    }
}

QString PartPictures::captionOf(const PartRow& part) const
{
    const Small* known = m_known.object(part.uid);
    QString second = part.part.outcome == PartOutcome::Found ? part.part.model : PartTexts::reason(part);
    if (part.picture().isEmpty())
        second = tr("没有保存图像");
    else if (known && !known->there)
        second = tr("图像已被清理");
    return QStringLiteral("%1%2  %3\n%4")
        .arg(part.marked ? QStringLiteral("★ ") : QString(), PartTexts::clock(part.wall),
             PartTexts::station(part.part.station), second);
}

const PartPictures::Small* PartPictures::wanted(const PartRow& part, int at) const
{
    if (const Small* known = m_known.object(part.uid))
        return known;
    if (part.picture().isEmpty() || m_requested.contains(part.uid))
        return nullptr;
    if (m_requested.size() >= mostRequests) {
        m_reading.clear();
        m_requested.clear();
    }
    m_requested.insert(part.uid);
    auto* self = const_cast<PartPictures*>(this); // a view sees a const table that fills itself
    const auto read = [path = m_home + part.picture()] {
        const QSize box(pictureWidth, pictureHeight);
        return Small{ImageFile::readScaled(path, box), QFileInfo::exists(path)};
    };
    m_reading.run(read, [self, uid = part.uid, at, number = m_number](const Small& small) {
        if (number != self->m_number)
            return;
        self->m_requested.remove(uid);
        self->m_known.insert(uid, new Small(small));
        const QModelIndex place = self->placeOf(at);
        emit self->dataChanged(place, place);
    });
    return nullptr;
}

QSize PartPictureDelegate::sizeFor(const QWidget* view)
{
    return {PartPictures::pictureWidth + 2 * cellMargin,
            PartPictures::pictureHeight + captionLines * view->fontMetrics().height() + 3 * cellMargin};
}

void PartPictureDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    if (!index.data(Qt::UserRole).isValid())
        return;
    const LookColors& colors = lookColors();
    const LookColors::Sign& sign = PartTableModel::signOf(PartOutcome(index.data(Qt::UserRole).toInt()));
    const QRect cell = option.rect.adjusted(2, 2, -2, -2);
    painter->fillRect(cell, sign.ground);
    if (option.state & QStyle::State_Selected) {
        painter->setPen(QPen(colors.accent, 3));
        painter->drawRect(cell.adjusted(1, 1, -2, -2));
    }
    const QRect room(cell.x() + cellMargin - 2, cell.y() + cellMargin, PartPictures::pictureWidth,
                     PartPictures::pictureHeight);
    painter->fillRect(room, colors.field);
    const QImage image = index.data(Qt::DecorationRole).value<QImage>();
    if (!image.isNull())
        painter->drawImage(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, image.size(), room), image);
    painter->setPen(sign.ink);
    const QStringList lines = index.data().toString().split(QLatin1Char('\n'));
    const int height = option.fontMetrics.height();
    QRect line(room.x(), room.bottom() + cellMargin, room.width(), height);
    for (const QString& text : lines) {
        painter->drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                          option.fontMetrics.elidedText(text, Qt::ElideRight, line.width()));
        line.translate(0, height);
    }
}
