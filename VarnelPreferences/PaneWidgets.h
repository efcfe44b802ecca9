#pragma once

#include <VarnelPreferences/PreferencesForm.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QMargins>

namespace Varnel {

/// The room around the content of a pane.
constexpr QMargins paneMargins(16, 16, 16, 16);

/// Widths of paragraphs that stand across a pane and beside its labels. Chosen so that no message makes the window
/// wider.
constexpr int paneColumns = 58;
constexpr int fieldColumns = 42;

/// A paragraph of a fixed width that asks for exactly the height its text needs. (A plain wrapping label makes
/// the layouts above it depend on their width, which a window of fixed size does not follow.)
class ParagraphLabel final : public QLabel {
public:
    /// `columns` is the width in average characters.
    explicit ParagraphLabel(int columns, const QString& text = {});

    bool hasHeightForWidth() const override { return false; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int m_columns;
};

/// A state in words, with a small sign before it whose shape, not only its colour, tells the kind.
class StateLine final : public QWidget {
    Q_OBJECT

public:
    enum class Sign { none, good, off, warning };

    /// `columns` is the width of the text in average characters.
    explicit StateLine(int columns);

    void setState(Sign sign, const QString& text);

    /// What is told of the state on demand, a line each: in the tooltip, and to an assistive program.
    void setDetails(const QString& lines);

private:
    class SignWidget;

    SignWidget* m_sign;
    ParagraphLabel* m_text;
};

/// What a hint explains: the switch above it, in line with that one's text, or the whole pane.
enum class HintPlace { ofSwitch, ofAll };

/// A paragraph in small type.
ParagraphLabel* makeHint(const QString& text, HintPlace place = HintPlace::ofSwitch);

/// Adds a row whose label, with its mnemonic, leads to `control` and names it. `row` is what stands beside the label
/// when that is more than the control.
void addField(QFormLayout& layout, const QString& label, QWidget* control, QWidget* row = nullptr);

/// A switch that shows `field` and edits it. `form` must outlive it.
QCheckBox* makeSwitch(PreferencesForm& form, bool AppSettings::* field, const QString& text);

/// A picker of all cases of an enumeration that shows `field` and edits it. `form` must outlive it.
template <typename E>
QComboBox* makePicker(PreferencesForm& form, E AppSettings::* field) {
    auto* picker = new QComboBox;
    for (const auto& choice : allCases<E>()) {
        picker->addItem(QCoreApplication::translate("AppSettings", choice.displayName));
        if (choice.value == form.draft().*field) {
            picker->setCurrentIndex(picker->count() - 1);
        }
    }
    QObject::connect(picker, &QComboBox::currentIndexChanged, &form, [&form, field](int index) {
        form.edit(field, allCases<E>().at(static_cast<std::size_t>(index)).value);
    });
    return picker;
}

} // namespace Varnel
