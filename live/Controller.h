// Controller, a robot controller whose values stay connected.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "live/Clock.h"
#include "live/Name.h"
#include "live/Reason.h"
#include "live/Value.h"
#include "live/live_export.h"

namespace orif::live {

/// The connection between a Controller and the robot controller.
enum class Link {
  Closed,      ///< not opened yet, or closed by the program
  Connecting,  ///< being made: connect, then register everything
  Up,          ///< made; a failed refresh makes the values stale at first
  Lost,        ///< not made, or broken; a later Refresh tries again
};

/// "closed", "connecting", "up" or "lost".
ORIF_LIVE_EXPORT std::string_view ToText(Link link);

/// A change of the link, with the reason for which it is lost or closed.
using LinkEvent = std::function<void(Link link, const Reason& reason)>;

/// Whether the lower layer's words tell that there is no connection any more, in English: "Not
/// connected", "Connection lost", "Link is down" and the like.
ORIF_LIVE_EXPORT bool TellsLostLink(const Reason& reason);

/// What a Controller is made of.
struct Settings {
  std::string host = {};                     ///< name or address of the robot controller; not empty
  std::optional<std::int32_t> port = {};     ///< TCP port; the component's default without
  std::optional<Milliseconds> timeOut = {};  ///< for an answer, 100 ms or more; as `port`
  /// The communication component: the absolute path of a shared object, on Windows also a
  /// registered class; empty for the one that a Core takes by itself.
  std::string component = {};
  DispatchFactory factory = {};        ///< lower core objects, in place of a component
  std::vector<std::string> tags = {};  ///< names: "R[1-10]", "PR[1].X", "$NAME:int", "DO[1-16]"
  /// Whether registers and signals have their comments too, as tags "R[1].comment".
  bool comments = false;
  Retry retry = {};  ///< how long to wait before a lost link is tried again
  /// Whether a reason tells that the link is lost, for a component with words of its own.
  std::function<bool(const Reason&)> tellsLostLink = TellsLostLink;
  /// Makes the texts of tags, reasons and the debug trail of the controller's bytes, for a program
  /// whose texts have another encoding; empty if they are those bytes.
  TextConversion fromController = {};
  /// Makes the controller's bytes of a text to write, or throws a UsageError if its encoding has no
  /// such characters. Called on any thread that calls Check. Empty as above.
  TextConversion toController = {};
  /// Whether the lines that a Core traces go to the debug trail; DebugMessages has them.
  bool debugLog = false;
  LinkEvent onLink = {};              ///< called at every change of the link; may be empty
  std::shared_ptr<Clock> clock = {};  ///< empty for the computer's
};

/// A value to write to a tag.
struct Assignment {
  std::string name = {};  ///< of a tag: "R[3]", "PR[1].X"
  Value value = {};       ///< of the tag's type
};

/// How something that was asked of the robot controller ended.
struct Answer {
  bool done = false;                               ///< whether the controller accepted it
  Reason reason = {};                              ///< why not
  explicit operator bool() const { return done; }  ///< the same as `done`
};

/// The tags of one item: a register with its fields and comment.
struct Item {
  std::string name;   ///< "PR[2]"
  std::size_t named;  ///< index in Settings::tags of the name that it belongs to
  std::size_t first;  ///< index of its first tag
  std::size_t count;  ///< how many tags it has
};

/// A robot controller with named values, its tags. It registers and refreshes them through an
/// orif::Core, and if the link is lost, it makes a new one with everything registered again in the
/// same order. References to tags stay good as long as the Controller lives.
///
///     orif::live::Controller cell({.host = "cell1", .tags = {"R[1-10]", "DO[1-16]"}});
///     while (cell.Refresh()) std::cout << cell["R[3]"].value.Text() << '\n';
///
/// A Controller is a unit: one thread at a time uses it, and different ones may be used at once. A
/// Monitor gives it a thread of its own.
class ORIF_LIVE_EXPORT Controller {
 public:
  /// Checks settings and names; connects nothing yet. Throws a UsageError for an empty host, a
  /// period out of range, a name that is none, a tag that is named twice, and more items than the
  /// data area of a robot controller holds (16383 words).
  explicit Controller(live::Settings settings);
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;

  /// Closes the link, without an event.
  ~Controller();

  /// Connects and registers all items, if the link is not up. Returns false if there is no
  /// connection: the link is lost then, LastReason says why, and a later Refresh tries again, or
  /// Connect does so at once.
  bool Connect();

  /// Reads all tags: one bulk read of everything that lies in the data area, then the signals, one
  /// call for each kind and run of consecutive numbers. The first one connects. Returns whether it
  /// succeeded; names that the controller refuses are no failure while anything else can be read,
  /// and neither are items whose words cannot be decoded, which are stale.
  ///
  /// A bulk read that fails makes all tags stale, a run of signals that fails although it was read
  /// before makes the rest of the signals stale; both count as a failure of the refresh, and so
  /// does it if nothing at all can be read. The second failure in a row makes the link lost, and
  /// the first one does if its reason tells so. While the link is lost, Refresh returns false at
  /// once until the next attempt is due, and then connects again before it reads.
  bool Refresh();

  /// Closes the link. All good tags are stale. Connect or Refresh open it again.
  void Close();

  /// The state of the link.
  Link State() const;

  /// When the next attempt to connect is due, while the link is lost.
  std::chrono::steady_clock::time_point RetryAt() const;

  /// Why the last Connect, Refresh, Write or ClearAlarms failed; empty if none has. A success does
  /// not clear it.
  const Reason& LastReason() const;

  /// What the controller was made of; a clock and what tells a lost link are never empty.
  const live::Settings& Settings() const;

  /// The parsed names of Settings::tags.
  std::span<const Name> Names() const;

  /// All tags in the order of their names, from Settings::tags.
  std::span<const Tag> Tags() const;

  /// All items in the same order, each with its tags.
  std::span<const Item> Items() const;

  /// The indices of the tags whose value or quality changed in the last Connect, Refresh or Close,
  /// or when a Write or ClearAlarms lost the link; ascending.
  std::span<const std::size_t> Changed() const;

  /// The tag `name`, upper or lower case. Throws a UsageError if there is none of that name.
  const Tag& operator[](std::string_view name) const;

  /// The index of the tag `name` in Tags. Throws a UsageError as operator[].
  std::size_t IndexOf(std::string_view name) const;

  /// Writes a value to a tag at once; a Refresh shows it. Returns false in the answer if the link
  /// is not up or the controller refuses. Throws a UsageError, with nothing written, if there is no
  /// such tag, if it is read only (current positions, tasks, alarms) or of another type, if the
  /// value does not fit, and if a text is longer than 80 bytes. A register without a type becomes
  /// an integer or a real as the value is.
  Answer Write(std::string_view name, const Value& value);

  /// Writes several values in order, with an answer for each. After the first that the controller
  /// refuses nothing more is written, and the answers say so. Throws a UsageError as above, with
  /// nothing written.
  ///
  /// The fields of one position are written together, where the first of them stands. Fields that
  /// are not named stay as the controller has them, which is read before anything is written. A
  /// position is written in joint form if a joint is named, up to the last one named, else in
  /// cartesian form; if it has not had that form before, joints 1 to 6 or X to R must be named.
  std::vector<Answer> Write(std::span<const Assignment> assignments);

  /// Does all that Write does short of writing. An answer tells what keeps a value from being
  /// written, such as a position that has no such form yet.
  std::vector<Answer> Rehearse(std::span<const Assignment> assignments);

  /// Throws the UsageError that Write would throw. Any thread may call it at any time.
  void Check(std::span<const Assignment> assignments) const;

  /// Resets the alarms of the robot controller: those of kind `type` if that is above 0, else all.
  Answer ClearAlarms(std::int32_t type = 0);

  /// The last lines of the debug trail of the calling thread, as Core::GetDebugMessages has them;
  /// without a connection, those at the end of the last one. Empty unless Settings::debugLog is on.
  std::string DebugMessages() const;

  /// How long the component waits for an answer: the setting, or the component's own while the link
  /// is up.
  std::optional<Milliseconds> TimeOut() const;

  /// The TCP port of the robot controller: the setting, or the component's own while the link is
  /// up.
  std::optional<std::int32_t> Port() const;

 private:
  struct Self;
  std::unique_ptr<Self> self_;
};

}  // namespace orif::live
