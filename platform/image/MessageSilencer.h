#pragma once

namespace quillon {

/// While one exists, the messages that Qt's and libtiff's decoders write about damaged files on this thread are
/// dropped: a file that turns out to be no picture is an everyday answer, and the decoders' remarks about it are of no
/// use to the person at the terminal. Messages of other threads go on to whoever handles them.
class MessageSilencer {
public:
    MessageSilencer();
    MessageSilencer(const MessageSilencer&) = delete;
    MessageSilencer& operator=(const MessageSilencer&) = delete;
    ~MessageSilencer();
};

}  // namespace quillon
