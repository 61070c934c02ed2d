#include "app/theme/text.h"

#include <algorithm>

#include <QFont>
#include <QFontMetrics>
#include <QTextLayout>

#include "core/patrol/byte_format.h"
#include "core/patrol/count_format.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

/// So many characters without a blank fit on any screen.
constexpr qsizetype longestRun = 64;
constexpr QChar zeroWidthSpace(0x200B);

}  // namespace

QString displayString(std::string_view bytes)
{
    return QString::fromStdString(displayText(bytes));
}

QString displayName(std::string_view bytes)
{
    constexpr char16_t pictures = 0x2400;
    constexpr char16_t pictureOfDelete = 0x2421;
    QString name = displayString(bytes);
    for (QChar& character : name) {
        const char16_t code = character.unicode();
        if (code < 0x20) {
            character = QChar(static_cast<char16_t>(pictures + code));
        } else if (code == 0x7F) {
            character = QChar(pictureOfDelete);
        }
    }
    return name;
}

QString toolTipText(const QString& text)
{
    QString breakable;
    qsizetype run = 0;
    for (const QChar character : text) {
        run = character.isSpace() ? 0 : run + 1;
        if (run > longestRun && !character.isLowSurrogate() && !character.isMark()) {
            breakable.append(zeroWidthSpace);
            run = 1;
        }
        breakable.append(character);
    }
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>")
        .arg(breakable.toHtmlEscaped());
}

QStringList wrappedLines(const QString& text, const QFont& font, int width, int mostLines)
{
    QStringList lines;
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
        QTextLayout layout(paragraph, font);
        layout.setTextOption(option);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        if (!line.isValid()) {
            lines.append(QString());
        }
        for (; line.isValid(); line = layout.createLine()) {
            line.setLineWidth(std::max(width, 1));
            if (lines.size() + 1 == mostLines) {
                const QString rest = paragraph.mid(line.textStart());
                lines.append(QFontMetrics(font).elidedText(rest, Qt::ElideMiddle, width));
                return lines;
            }
            lines.append(paragraph.mid(line.textStart(), line.textLength()));
        }
        layout.endLayout();
    }
    return lines;
}

int wrappedHeight(const QString& text, const QFont& font, int width)
{
    const QFontMetrics metrics(font);
    const auto lines = static_cast<int>(wrappedLines(text, font, width).size());
    return (lines - 1) * metrics.lineSpacing() + metrics.height();
}

QString bytesText(Bytes bytes)
{
    return QString::fromStdString(ByteFormat::string(bytes));
}

QString groupedNumber(qint64 count)
{
    return QString::fromStdString(CountFormat::string(count));
}

}  // namespace gruk
