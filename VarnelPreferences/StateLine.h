#pragma once

#include <QWidget>

namespace Varnel {

class ParagraphLabel;

/// A state in words, with a small sign before it whose shape, not only its colour, tells the kind.
class StateLine final : public QWidget {
    Q_OBJECT

public:
    enum class Sign { none, good, off, warning };

    /// `columns` is the width of the text in average characters.
    explicit StateLine(int columns);

    void setState(Sign sign, const QString& text);

private:
    class SignWidget;

    SignWidget* m_sign;
    ParagraphLabel* m_text;
};

} // namespace Varnel
