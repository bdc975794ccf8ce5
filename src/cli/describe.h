#pragma once

#include "app/application.h"
#include "cli/output.h"

namespace orma::cli {

/// Everything that a file of this system holds, every field named. Which kind of file it is, its
/// first bytes tell. Throws std::runtime_error when it is none of ours or cannot be read.
[[nodiscard]] Json DescribeFile(Application& app, const Text& path);

/// One kind of file each; the same failures.
[[nodiscard]] Json DescribeSettings(Application& app, const Text& path);
[[nodiscard]] Json DescribeProject(Application& app, const Text& path);
[[nodiscard]] Json DescribeLevels(Application& app, const Text& path);
[[nodiscard]] Json DescribeWave(Application& app, const Text& path);
[[nodiscard]] Json DescribeMp2(Application& app, const Text& path);

/// A setting's value: a number or a text.
[[nodiscard]] Json SettingValue(const Setting& setting);

/// Adds the level file beside a take, when there is one, to the take's fields.
void AddLevels(Application& app, const Text& audioPath, Json& fields);

/// The fields of a level sheet, for level files and takes.
[[nodiscard]] Json SheetFields(const LevelSheet& sheet);

}  // namespace orma::cli
