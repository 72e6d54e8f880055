#include "viewer/RoiCursors.h"

#include <QPixmap>

#include <array>
#include <cmath>

namespace RoiCursors {

int rotationOffset(double rotation)
{
    float r = std::fmod(static_cast<float>(rotation), 360.0f);
    if (r < 0)
        r += 360.0f;
    if (r >= 337.5f || r <= 22.5f)
        return 0;
    return static_cast<int>(std::ceil((r - 22.5f) / 45.0f));
}

QCursor rotation(int index)
{
    static const std::array<QCursor, 8> cursors = [] {
        std::array<QCursor, 8> built;
        for (int i = 0; i < 8; ++i)
            built[i] = QCursor(QPixmap(QStringLiteral(":/cursor_rotate_%1.png").arg(45 * i)));
        return built;
    }();
    return cursors[((index % 8) + 8) % 8];
}

Qt::CursorShape resize(int direction, int offset)
{
    static constexpr std::array<Qt::CursorShape, 4> shapes{Qt::SizeHorCursor, Qt::SizeFDiagCursor, Qt::SizeVerCursor,
                                                           Qt::SizeBDiagCursor};
    return shapes[(direction + offset) % 4];
}

} // namespace RoiCursors
