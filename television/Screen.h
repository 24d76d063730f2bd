// The video plane: the picture that is shown and the rectangle that it is scaled to. All threads.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "television/Television.h"

namespace television {

class Screen {
public:
    // Called without a lock: there is another picture, or other subtitles, or none any more; the rectangle moved; the
    // shown picture's aspect ratio is another, or is known now.
    std::function<void()> pictureChanged, layoutChanged, aspectChanged;

    // Black, and from now on only the pictures and subtitles of this session are shown. Sessions are numbered upwards;
    // one that is older than the last one begun changes nothing.
    void Begin(std::uint64_t session);
    // The same, but the last picture stays until the first one of the session.
    void Continue(std::uint64_t session);
    void Show(std::uint64_t session, std::shared_ptr<const Picture> picture);
    // Null: none.
    void ShowSubtitles(std::uint64_t session, std::shared_ptr<const Subtitles> subtitles);
    // Whether pictures are seen; where they are not, the plane is black.
    void ShowVideo(bool shown);

    void SetWindow(const TPTRect& window);
    void SetFullScreen();
    // The aspect ratio that the viewer wants pictures to be shown with; none: their own.
    void ForceAspectRatio(std::optional<double> ratio);

    std::shared_ptr<const Picture> CurrentPicture() const;
    std::shared_ptr<const Subtitles> CurrentSubtitles() const;
    // Where the picture is; its aspect ratio is kept in it on the full screen.
    TPTRect Rectangle() const;
    // With which the picture is shown.
    std::optional<double> AspectRatio() const;

private:
    void Move(std::optional<TPTRect> window);
    TPTRect Place() const;
    double Ratio(const Picture& picture) const { return m_forcedRatio.value_or(picture.aspectRatio); }

    mutable std::mutex m_mutex;
    std::uint64_t m_session = 0;
    std::shared_ptr<const Picture> m_picture;
    std::shared_ptr<const Subtitles> m_subtitles;
    bool m_videoShown = true;
    std::optional<TPTRect> m_window;  // none: full screen
    std::optional<double> m_forcedRatio;
};

}  // namespace television
