#include "cli/project_path.h"

#include "base/path.h"
#include "cli/environment.h"

namespace orma::cli {

Text ProjectPath(const std::string& argument) {
    Text path = CallerPath(argument);
    const PathParts parts = SplitPath(path);
    if (parts.extension != u".opr" || parts.name.empty())
        throw UsageError("not a project file (.opr): " + argument);
    return path;
}

}  // namespace orma::cli
