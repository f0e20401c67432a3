#include "batch/Advice.h"

#include "session/InputLoader.h"
#include "session/SessionFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace orvel {
namespace {

struct Worded {
    QString code; ///< in JSON
    QString text;
};

Worded describe(DesignFault fault)
{
    switch (fault) {
    case DesignFault::None:
        break;
    case DesignFault::BadSettings:
        return {"BadSettings", "a number asked for is out of its range"};
    case DesignFault::FewReferences:
        return {"FewReferences", "less than two references take part"};
    case DesignFault::InvalidReference:
        return {"InvalidReference", "a reference that takes part has no spectrum or no edge jump"};
    case DesignFault::BadComposition:
        return {"BadComposition", "the references that take part have no fractions"};
    case DesignFault::EqualValences:
        return {"EqualValences", "all references have the same valence; see --criterion"};
    case DesignFault::CountForMethod:
        return {"CountForMethod", "the session's method does not take that many energies"};
    case DesignFault::FewPoints:
        return {"FewPoints", "there are less energies than unknowns"};
    case DesignFault::NoVPoint:
        return {"NoVPoint", "no V point is selected"};
    case DesignFault::NoEnergy:
        return {"NoEnergy", "the energy of a used point is not known"};
    case DesignFault::FewCandidates:
        return {"FewCandidates",
                "so many energies so far apart do not fit into the range of the references"};
    case DesignFault::FewAlikeCandidates:
        return {"FewAlikeCandidates",
                "the references are alike at too few energies for the four-points method"};
    case DesignFault::NotDetermined:
        return {"NotDetermined", "the energies do not separate the unknowns"};
    }
    return {};
}

Worded describe(DesignWarning warning)
{
    switch (warning) {
    case DesignWarning::NoFreedom:
        return {"NoFreedom", "zero degrees of freedom: residuals will say nothing about the noise"};
    case DesignWarning::FarFromBest:
        return {"FarFromBest", "a standard deviation is ten times that of the best energies"};
    case DesignWarning::UnlikeReferences:
        return {"UnlikeReferences",
                "the references differ at a point other than V: a systematic error beside the "
                "standard deviations"};
    case DesignWarning::AmountInNoise:
        return {"AmountInNoise", "the amount is hardly above its noise: the standard deviations "
                                 "are too small"};
    }
    return {};
}

Worded describe(Method method)
{
    switch (method) {
    case Method::None:
        break;
    case Method::ThreePoints:
        return {"ThreePoints", "three points"};
    case Method::ExactFourPoints:
        return {"ExactFourPoints", "exact four points"};
    case Method::LeastSquares:
        return {"LeastSquares", "least squares"};
    case Method::NonEquivLinear:
        return {"NonEquivLinear", "non-equivalent, linear background"};
    case Method::NonEquivVictoreen:
        return {"NonEquivVictoreen", "non-equivalent, Victoreen background"};
    }
    return {"None", "-"};
}

QString criterionName(DesignCriterion criterion)
{
    return criterion == DesignCriterion::Valence ? QStringLiteral("valence")
                                                 : QStringLiteral("fractions");
}

// --- JSON --------------------------------------------------------------------------------------

QJsonValue jsonOf(double number)
{
    return std::isfinite(number) ? QJsonValue(number) : QJsonValue();
}

template <class Numbers> QJsonArray jsonOf(const Numbers &numbers)
{
    QJsonArray array;
    for (const double number : numbers) {
        array.append(jsonOf(number));
    }
    return array;
}

QJsonObject jsonOf(const ExpectedPrecision &expected)
{
    QJsonObject object = {{"method", describe(expected.method).code},
                          {"energies", jsonOf(expected.energiesEv)}};
    if (expected.fault != DesignFault::None) {
        object["fault"] = describe(expected.fault).code;
        return object;
    }
    if (expected.vPoint >= 0) {
        object["vPoint"] = expected.vPoint;
    }
    object["sigmaFractions"] = jsonOf(expected.fractions);
    object["sigmaValence"] = jsonOf(expected.valence);
    object["sigmaAmount"] = jsonOf(expected.amount);
    object["freedom"] = expected.freedom;
    object["condition"] = jsonOf(expected.condition);
    QJsonArray warnings;
    for (const DesignWarning warning : expected.warnings) {
        warnings.append(describe(warning).code);
    }
    object["warnings"] = warnings;
    return object;
}

QString jsonText(const EnergyAdvice &advice, const AdviserSettings &settings)
{
    const QJsonObject assumed = {{"amount", settings.amount},
                                 {"sigma", settings.sigma},
                                 {"fractions", jsonOf(settings.fractions)}};
    QJsonObject object = {{"version", 1},
                          {"criterion", criterionName(settings.criterion)},
                          {"minimumSpacing", settings.minimumSpacingEv},
                          {"alikeWithin", settings.alikeWithin},
                          {"assumed", assumed},
                          {"present", jsonOf(advice.present)},
                          {"best", jsonOf(advice.best)}};
    if (!advice.candidatesEv.empty()) {
        object["candidates"] = QJsonObject{{"count", static_cast<int>(advice.candidatesEv.size())},
                                           {"low", advice.candidatesEv.front()},
                                           {"high", advice.candidatesEv.back()}};
    }
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

// --- table -------------------------------------------------------------------------------------

QString row(const QString &title, const QString &present, const QString &best)
{
    return QStringLiteral("%1%2%3\n").arg(title, -20).arg(present, 14).arg(best, 14);
}

QString significant(double number)
{
    return std::isnan(number) ? QStringLiteral("-") : QString::number(number, 'g', 4);
}

QString energyText(const ExpectedPrecision &expected, size_t i)
{
    if (i >= expected.energiesEv.size()) {
        return {};
    }
    const bool isV = static_cast<int>(i) == expected.vPoint;
    return (isV ? QStringLiteral("V ") : QString()) +
           QString::number(expected.energiesEv[i], 'f', 2);
}

QString figures(const EnergyAdvice &advice)
{
    const ExpectedPrecision &present = advice.present;
    const ExpectedPrecision &best = advice.best;
    const auto numbers = [](const QString &title, double first, double second) {
        return row(title, significant(first), significant(second));
    };
    QString text;
    for (size_t i = 0; i < best.fractions.size(); ++i) {
        if (std::isfinite(present.fractions[i]) || std::isfinite(best.fractions[i])) {
            text += numbers(QStringLiteral("sigma Ratio %1").arg(i + 1), present.fractions[i],
                            best.fractions[i]);
        }
    }
    text += numbers(QStringLiteral("sigma Valence"), present.valence, best.valence);
    text += numbers(QStringLiteral("sigma Amount"), present.amount, best.amount);
    const auto freedom = [](const ExpectedPrecision &expected) {
        return expected.fault == DesignFault::None ? QString::number(expected.freedom)
                                                   : QStringLiteral("-");
    };
    text += row(QStringLiteral("degrees of freedom"), freedom(present), freedom(best));
    if (std::isfinite(present.condition) || std::isfinite(best.condition)) {
        text += numbers(QStringLiteral("condition number"), present.condition, best.condition);
    }
    return text;
}

QString notes(const QString &title, const ExpectedPrecision &expected)
{
    QString text;
    if (expected.fault != DesignFault::None) {
        text += QStringLiteral("%1 energies: not possible: %2\n")
                    .arg(title, describe(expected.fault).text);
    }
    for (const DesignWarning warning : expected.warnings) {
        text += QStringLiteral("%1 energies: warning: %2\n").arg(title, describe(warning).text);
    }
    return text;
}

QString tableText(const EnergyAdvice &advice, const AdviserSettings &settings)
{
    QString text = QStringLiteral("Present method: %1. Best %2 energies for: %3, least sigma of "
                                  "the %4.\nAssumed: amount %5, sigma of an absorption %6.\n")
                       .arg(describe(advice.present.method).text)
                       .arg(settings.points)
                       .arg(describe(advice.best.method).text, criterionName(settings.criterion))
                       .arg(settings.amount)
                       .arg(settings.sigma);
    if (!advice.candidatesEv.empty()) {
        text += QStringLiteral("Candidates: %1 from %2 to %3 eV, at least %4 eV apart.\n")
                    .arg(advice.candidatesEv.size())
                    .arg(QString::number(advice.candidatesEv.front(), 'f', 2),
                         QString::number(advice.candidatesEv.back(), 'f', 2))
                    .arg(settings.minimumSpacingEv);
    }
    text += QLatin1Char('\n') + row(QString(), QStringLiteral("present"), QStringLiteral("best"));
    const size_t rows = std::max(advice.present.energiesEv.size(), advice.best.energiesEv.size());
    for (size_t i = 0; i < rows; ++i) {
        text += row(QStringLiteral("energy %1 [eV]").arg(i + 1), energyText(advice.present, i),
                    energyText(advice.best, i));
    }
    text += figures(advice);
    const QString remarks = notes(QStringLiteral("present"), advice.present) +
                            notes(QStringLiteral("best"), advice.best);
    return remarks.isEmpty() ? text : text + QLatin1Char('\n') + remarks;
}

/// The session without the files that only a calculation needs.
SessionTexts forAdvice(SessionTexts texts)
{
    texts.target.file.clear();
    for (PointTexts &point : texts.points) {
        if (!point.use || !point.energy.isEmpty()) {
            point.file.clear();
        }
    }
    return texts;
}

} // namespace

ExitStatus adviseSession(const CommandLine &commandLine)
{
    const SessionReading session = readSession(commandLine.sessionPaths.first());
    for (const QString &note : session.notes) {
        complain(QStringLiteral("%1: %2").arg(commandLine.sessionPaths.first(), note));
    }
    if (!session.error.isEmpty()) {
        complain(QStringLiteral("cannot take the session %1: %2")
                     .arg(commandLine.sessionPaths.first(), session.error));
        return WrongUsage;
    }
    const SessionTexts texts = forAdvice(session.state.texts);
    const LoadedInput loaded = loadInput(texts);
    bool isReferenceMissing = false;
    for (const UnreadableFile &file : loaded.unreadable) {
        complain(QStringLiteral("cannot read %1: %2").arg(file.path, describe(file.reason)));
        for (const ReferenceTexts &reference : texts.references) {
            isReferenceMissing = isReferenceMissing || reference.file == file.path;
        }
    }
    if (isReferenceMissing) {
        return InputUnreadable;
    }

    AdviserSettings settings = commandLine.advice;
    const auto references = validReferences(loaded.input.references);
    if (!commandLine.fractions.empty()) {
        if (commandLine.fractions.size() != references.size()) {
            complain(QStringLiteral("--fractions has %1 numbers for %2 references")
                         .arg(commandLine.fractions.size())
                         .arg(references.size()));
            return WrongUsage;
        }
        for (size_t i = 0; i < references.size(); ++i) {
            settings.fractions[static_cast<size_t>(references[i]->row)] = commandLine.fractions[i];
        }
    }
    const EnergyAdvice advice = adviseEnergies(loaded.input, settings);
    print(commandLine.json ? jsonText(advice, settings) : tableText(advice, settings));
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain(QStringLiteral("the advice could not be written to standard output"));
        return OutputFailed;
    }
    return advice.best.fault == DesignFault::None ? EveryStepRan : CheckFailed;
}

} // namespace orvel
