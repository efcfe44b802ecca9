#pragma once

#include <VarnelStatusMenu/Linux/ItemProtocolTypes.h>
#include <VarnelStatusMenu/Linux/TitleForm.h>

namespace Varnel {

/// What a panel shows of the item, in the form the panel can show.
struct ItemFace {
    QString title;
    QString toolTip;
    QString label;          ///< of `TitleForm::label` alone
    QList<ItemPixmap> icon; ///< one form only: hosts differ in which of square and wide they take
};

/// `devicePixelRatio` is that of the panel's screen.
ItemFace itemFace(const QString& title, const QString& toolTip, TitleForm form, qreal devicePixelRatio);

} // namespace Varnel
