#include "text/ReadFailure.h"

namespace orvel {

QString describe(ReadFailure failure)
{
    switch (failure) {
    case ReadFailure::None:
        return QString();
    case ReadFailure::NotARegularFile:
        return QStringLiteral("there is no such readable file");
    case ReadFailure::CannotOpen:
        return QStringLiteral("it cannot be opened");
    case ReadFailure::LineTooLong:
        return QStringLiteral("it has lines far too long for a text of numbers");
    case ReadFailure::TooMuchData:
        return QStringLiteral("it holds more data than can be taken");
    case ReadFailure::NoPoint:
        return QStringLiteral("it holds no data point");
    case ReadFailure::NoDataMark:
        return QStringLiteral("it has no \"Offset\" line, after which the data would begin");
    case ReadFailure::NoGrid:
        return QStringLiteral("its header gives no width or no height");
    case ReadFailure::NoPixel:
        return QStringLiteral("it holds no pixel");
    case ReadFailure::GridTooLarge:
        return QStringLiteral("its header promises more pixels than it holds or than can be taken");
    case ReadFailure::NotEnoughMemory:
        return QStringLiteral("there is not enough memory for it");
    case ReadFailure::NotProcessed:
        return QStringLiteral("its header is not that of a processed map");
    }
    return QString();
}

} // namespace orvel
