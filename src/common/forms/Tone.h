#pragma once

#include "common/LookColors.h"

class QWidget;

/// How a text or a field is meant. Shown by colours that fit a light and a dark window; the property "tone" of the
/// widget ("plain", "warning", "error") lets a style sheet choose its own.
enum class Tone { Plain, Warning, Error };

/// The ground of a field or cell that is meant so; not for Tone::Plain.
QColor toneGround(Tone tone);

/// Paints a label or a frame with its labels on a ground of its own.
void setGround(QWidget* widget, const LookColors::Sign& sign);

/// Colours a label's text or a field's ground.
void setTone(QWidget* widget, Tone tone);
