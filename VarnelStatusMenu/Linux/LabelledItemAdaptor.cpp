#include <VarnelStatusMenu/Linux/LabelledItemAdaptor.h>

namespace Varnel {

void LabelledItemAdaptor::setFace(const ItemFace& face) {
    const QString oldLabel = label();
    StatusNotifierItemAdaptor::setFace(face);
    if (label() != oldLabel) {
        Q_EMIT XAyatanaNewLabel(label(), labelGuide());
    }
}

} // namespace Varnel
