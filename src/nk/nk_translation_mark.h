// Marks of translatable texts in the leaves that know no Qt.
#pragma once

/// A text in a table, shown later through NK::Translate(context, text). lupdate reads the mark as an alias of
/// QT_TRANSLATE_NOOP; context and text are string literals.
#define KIVORA_TR_NOOP(context, text) text
/// The same with a disambiguation comment: yields the braced pair {text, comment}. An alias of QT_TRANSLATE_NOOP3.
#define KIVORA_TR_NOOP_COMMENT(context, text, comment) \
    { text, comment }
