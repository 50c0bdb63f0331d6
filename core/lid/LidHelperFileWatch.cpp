#include "lid/LidHelperFileWatch.h"

namespace wakeloft {

std::string LidHelperFileWatch::Finding::sentence() const {
    if (const auto* replaced = std::get_if<Replaced>(&value))
        return "another helper is on disk now, cdhash " + replaced->codeDirectoryHash;
    if (*this == running())
        return "this helper is the one on disk";
    if (*this == missing())
        return "the helper's file is gone; this one goes on";
    return "the file on disk is no genuine helper; this one goes on";
}

LidHelperFileWatch::LidHelperFileWatch(std::string path, std::string runningCodeDirectoryHash,
                                       File startedFrom, Identify identify, Judge judge)
    : path_(std::move(path)),
      runningCodeDirectoryHash_(std::move(runningCodeDirectoryHash)),
      startedFrom_(startedFrom),
      identify_(std::move(identify)),
      judge_(std::move(judge)) {}

LidHelperFileWatch::Finding LidHelperFileWatch::find() {
    const auto identity = identify_(path_);
    if (!identity)
        return Finding::missing();
    if (!judged_ || judged_->first != *identity)
        judged_ = {*identity, judged(*identity)};
    return judged_->second;
}

LidHelperFileWatch::Look LidHelperFileWatch::look() {
    auto finding = find();
    const bool hasChanged = lastFinding_ != finding;
    lastFinding_ = finding;
    return {std::move(finding), hasChanged};
}

bool LidHelperFileWatch::stepsAside(const Finding& finding, bool isLeaseHeld, bool isResetInDoubt) {
    return std::holds_alternative<Finding::Replaced>(finding.value) && !isLeaseHeld && !isResetInDoubt;
}

LidHelperFileWatch::Finding LidHelperFileWatch::judged(const Identity& identity) const {
    auto hash = judge_(path_);
    if (!hash)
        return Finding::unrecognised();
    if (*hash == runningCodeDirectoryHash_ && identity.file() == startedFrom_)
        return Finding::running();
    return Finding::replaced(std::move(*hash));
}

} // namespace wakeloft
