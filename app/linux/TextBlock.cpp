#include "TextBlock.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextOption>

#include <algorithm>
#include <cmath>

namespace wakeloft {

namespace {

constexpr qreal veryWide = 100000;
constexpr qreal narrowingLimit = 0.3; // the share of the width that avoiding a widow may cost
constexpr int narrowingSteps = 16;

/// Letter spacing after each digit that is narrower than the widest one of its script.
QList<QTextLayout::FormatRange> fixedDigits(const QString& text, const QFont& font) {
    const QFontMetricsF metrics(font);
    QList<QTextLayout::FormatRange> formats;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar digit = text[i];
        if (!digit.isDigit())
            continue;
        const int zero = digit.unicode() - digit.digitValue();
        qreal cell = 0;
        for (int value = 0; value <= 9; ++value)
            cell = std::max(cell, metrics.horizontalAdvance(QChar(zero + value)));
        QTextLayout::FormatRange range;
        range.start = static_cast<int>(i);
        range.length = 1;
        QFont spaced = font;
        spaced.setLetterSpacing(QFont::AbsoluteSpacing, cell - metrics.horizontalAdvance(digit));
        range.format.setFont(spaced);
        formats.append(range);
    }
    return formats;
}

/// A sentence without any letter of a right-to-left script keeps its full stop at its right.
Qt::LayoutDirection readingDirection(const QString& text, Qt::LayoutDirection direction) {
    const bool isMirrored = std::ranges::any_of(text, [](QChar letter) {
        return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
    });
    return isMirrored ? direction : Qt::LeftToRight;
}

/// Lets long names of the system, such as of files and services, break where they are joined.
QString withBreaks(QString text) {
    constexpr int longWord = 20;
    constexpr QChar mayBreak(0x200b);
    text.replace(u'\n', QChar::LineSeparator);
    qsizetype wordEnd = text.size();
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (text[i].isSpace())
            wordEnd = i;
        const bool isJoint = text[i] == u'.' || text[i] == u'/' || text[i] == u'_' || text[i] == u':';
        if (!isJoint || i + 1 >= wordEnd || !text[i + 1].isLetterOrNumber())
            continue;
        qsizetype wordStart = i;
        while (wordStart > 0 && !text[wordStart - 1].isSpace())
            --wordStart;
        if (wordEnd - wordStart >= longWord)
            text.insert(i + 1, mayBreak);
    }
    return text;
}

} // namespace

TextBlock::TextBlock(const QString& text, const Format& format, qreal width)
    : layout_(withBreaks(text), format.font) {
    const Qt::Alignment leading = format.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
    QTextOption option((format.isCentered ? Qt::AlignHCenter : leading) | Qt::AlignAbsolute);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(readingDirection(text, format.direction));
    layout_.setTextOption(option);
    if (format.hasFixedDigits)
        layout_.setFormats(fixedDigits(layout_.text(), format.font));
    breakLines(width);
    avoidWidow(width);
}

void TextBlock::breakLines(qreal width) {
    height_ = 0;
    layout_.beginLayout();
    for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0, height_});
        height_ += line.height();
    }
    layout_.endLayout();
    height_ = std::ceil(height_);
}

void TextBlock::avoidWidow(qreal width) {
    const int lines = layout_.lineCount();
    const auto isWidow = [&] { return layout_.lineAt(lines - 1).naturalTextWidth() < width / 4; };
    if (lines < 2 || !isWidow())
        return;
    for (int step = 1; step <= narrowingSteps; ++step) {
        const qreal narrower = width - step * width * narrowingLimit / narrowingSteps;
        breakLines(narrower);
        if (layout_.lineCount() != lines)
            break;
        if (isWidow())
            continue;
        const QTextOption& option = layout_.textOption();
        if (option.alignment().testFlag(Qt::AlignHCenter))
            indent_ = (width - narrower) / 2;
        else if (option.alignment().testFlag(Qt::AlignRight))
            indent_ = width - narrower;
        return;
    }
    breakLines(width);
}

qreal TextBlock::ascent() const {
    return layout_.lineCount() > 0 ? layout_.lineAt(0).ascent() : 0;
}

void TextBlock::draw(QPainter& painter, QPointF topLeft) const {
    layout_.draw(&painter, topLeft + QPointF(indent_, 0));
}

const TextBlock& KeptTextBlock::of(const QString& text, const TextBlock::Format& format, qreal width) {
    if (!block_ || text != text_ || format != format_ || width != width_) {
        block_.emplace(text, format, width);
        text_ = text;
        format_ = format;
        width_ = width;
    }
    return *block_;
}

qreal TextBlock::singleLineWidth(const QString& text, const QFont& font) {
    // Laid out like the drawn text: metrics alone differ where another font steps in for a script.
    QTextLayout layout(text, font);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (!line.isValid())
        return 0; // no text
    line.setLineWidth(veryWide);
    layout.endLayout();
    return std::ceil(line.naturalTextWidth()) + 1;
}

} // namespace wakeloft
