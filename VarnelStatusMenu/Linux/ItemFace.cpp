#include <VarnelStatusMenu/Linux/ItemFace.h>

#include <VarnelStatusMenu/Linux/TitlePicture.h>

#include <array>
#include <cmath>

namespace Varnel {

namespace {

/// The sizes that panels ask for; each is drawn by itself, because a scaled text blurs.
constexpr std::array iconSizes{16, 22, 24, 32, 48};
/// Twice the height that waybar gives an icon by default: halved, the text stays sharp, and it is exact at twice the
/// resolution.
constexpr int widePictureHeight = 32;

QList<ItemPixmap> icon(const QString& title, TitleForm form, qreal devicePixelRatio) {
    QList<ItemPixmap> pixmaps;
    switch (form) {
    case TitleForm::label:
        for (const int size : iconSizes) {
            pixmaps.append(itemPixmap(sunPicture(size)));
        }
        break;
    case TitleForm::widePicture:
        pixmaps.append(
            itemPixmap(wideTitlePicture(title, static_cast<int>(std::lround(widePictureHeight * devicePixelRatio)))));
        break;
    case TitleForm::square:
        for (const int size : iconSizes) {
            pixmaps.append(itemPixmap(squareTitlePicture(title, size)));
        }
        break;
    }
    return pixmaps;
}

} // namespace

ItemFace itemFace(const QString& title, const QString& toolTip, TitleForm form, qreal devicePixelRatio) {
    return {title, toolTip, form == TitleForm::label ? titleLabel(title) : QString(),
            icon(title, form, devicePixelRatio)};
}

} // namespace Varnel
