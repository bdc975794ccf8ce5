#pragma once

namespace orma {

/// From now on helpers of the desktop (screen readers, switches, voice control) see every page
/// widget's controls: what they are, what they show when asked, and how to use them. Changes of
/// keys are told to them; a meter, or a running time, is read only when they ask. Once in a
/// process.
void InstallAccessiblePage();

}  // namespace orma
