#ifndef VORBEL_FRAMES_EPOCH_H
#define VORBEL_FRAMES_EPOCH_H

namespace vorbel {

/// Copies calendar stamp, day number and time of day between records that begin with them.
template <class From, class To>
inline void copyEpoch(const From& from, To& to) {
    to.year = from.year;
    to.month = from.month;
    to.day = from.day;
    to.hour = from.hour;
    to.minute = from.minute;
    to.second = from.second;
    to.date = from.date;
    to.time = from.time;
}

}  // namespace vorbel

#endif
