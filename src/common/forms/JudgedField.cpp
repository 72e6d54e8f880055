#include "common/forms/JudgedField.h"

#include "common/forms/Tone.h"

namespace {
constexpr int kLongestText = 40;
} // namespace

JudgedField::JudgedField(QWidget* parent)
    : QLineEdit(parent)
{
    setMaxLength(kLongestText);
    connect(this, &QLineEdit::textChanged, this, &JudgedField::judge);
    connect(this, &QLineEdit::editingFinished, this, [this] {
        if (problem().isEmpty())
            tidy();
    });
}

void JudgedField::judge()
{
    setTone(this, problem().isEmpty() ? Tone::Plain : Tone::Error);
}
