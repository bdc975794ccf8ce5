#include "cli/clip_fields.h"

#include "cli/position.h"

namespace orma::cli {
namespace {

Json Clip(const ClipEntry& clip, const AudioState& audio) {
    const std::uint32_t rate = audio.PeriodsPerSecond();
    Json fields = {{"name", ToJson(clip.name)},
                   {"title", ToJson(clip.title)},
                   {"length", PositionText(clip.length, rate)},
                   {"periods", clip.length},
                   {"recorded", ToJson(clip.timeDateText)},
                   {"file", ToJson(clip.BasePath() + (audio.mp2 ? u".mp2" : u".wav"))}};
    if (clip.end != 0) {
        fields["begin"] = PositionText(clip.begin, rate);
        fields["end"] = PositionText(clip.end, rate);
    }
    return fields;
}

}  // namespace

Json ClipFields(const Application& app) {
    Json clips = Json::array();
    for (std::int32_t i = 0; i < app.clips.Count(); ++i)
        clips.push_back(Clip(app.clips.At(i), app.audio));
    return clips;
}

}  // namespace orma::cli
