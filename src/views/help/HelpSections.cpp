#include "views/help/HelpSections.h"

#include <QVariantMap>

namespace ostrel {

const std::vector<HelpSections::Section>& HelpSections::all()
{
    static const std::vector<Section> sections {
        {"Getting Started",
            "Ostrel Live shows what QLab is playing and how loud it is in the room. Connect your "
            "measurement microphone, calibrate it once, and open your QLab workspace. Enter the "
            "address of the Mac running QLab in Settings \u203a QLab."},
        {"Calibrating Your Microphone",
            "Choose Settings \u203a Calibration \u203a Calibrate Microphone. Place the microphone "
            "in your acoustic calibrator, switch it on, and enter the level printed on the "
            "calibrator (usually 94 dB SPL). Ostrel Live measures the tone and stores the offset. "
            "Recalibrate if you change the microphone, the interface, or its gain."},
        {"Reading the Meter",
            "The large number is the current sound pressure level. A, C and Z describe the "
            "frequency weighting: A follows human hearing and is used for noise exposure, C "
            "includes more bass, and Z is unweighted. Fast responds within an eighth of a second; "
            "Slow averages over one second. Peak is the highest instantaneous level, Max is the "
            "highest meter reading, and Leq is the average sound energy since the session "
            "started."},
        {"Frequency",
            "Dominant shows the strongest frequency the microphone hears. With a calibrator it "
            "should read close to 1.00 kHz, and a sudden steady tone can point to feedback. "
            "Switch the graph to Spectrum to see the level in each octave band, from 31.5 Hz to "
            "16 kHz, unweighted."},
        {"Colours",
            "The number turns orange when the level is elevated and red when it's high. Set the "
            "thresholds in Settings \u203a Display. The status next to the meter setting always "
            "describes the level in words."},
        {"QLab",
            "Ostrel Live uses QLab 5's OSC interface on port 53000. It listens for cue events "
            "rather than polling, so it adds no noticeable load to your show machine. To monitor "
            "QLab on another Mac, enter its address in Settings \u203a QLab."},
        {"Timecode",
            "When a QLab Timecode cue is running, Ostrel Live shows the timecode it's generating, "
            "with its frame rate and whether it's LTC or MTC. QLab doesn't broadcast its timecode "
            "position, so Ostrel Live works it out from the cue's start time and elapsed time and "
            "checks it with QLab every second. Treat it as a guide, accurate to about a frame, "
            "not as a reference clock. QLab 5.4 doesn't share the cue's frame rate, so set it in "
            "Settings \u203a QLab, and leave the Timecode cue unnamed so Ostrel Live can read its "
            "start time."},
        {"Feedback Warning",
            "Ostrel Live warns you when a single tone rings out above everything around it, holds "
            "its pitch and has almost no harmonics, which is how feedback behaves. Musical notes "
            "carry harmonics, so they're ignored. A deliberate pure tone, such as a test tone or "
            "sine effect, will also trigger it. Turn it off in Settings \u203a Meter. It pauses "
            "while you calibrate."},
        {"Dante",
            "Ostrel Live lists the Dante devices it can see on this computer's network. If one "
            "disappears, the screen flashes red three times, its name appears in orange at the "
            "top left, and it's recorded in the dropout list; click it to see every device. "
            "Ostrel Live only listens for devices announcing themselves, so it never changes "
            "routing, and it can take up to about a minute to notice an unplugged device."},
        {"Radio Mics",
            "Add your Sennheiser receivers in Settings \u203a Mics. When a mic drops out its name "
            "appears in red under the current cue; low signal and low batteries appear in orange. "
            "Nothing is shown while mics are fine, and a mic only counts as dropped out if it had "
            "signal first. ew G4 needs EM 300-500 G4 receivers on firmware 1.7 or later. EW-DX "
            "needs firmware 4.0 or later and 3rd Party Access enabled in WSM. Ostrel Live only "
            "reads, so it works alongside WSM."},
        {"Sessions",
            "Choose File \u203a New Session before a performance. Ostrel Live records the "
            "microphone's audio, the level and spectrum, and every cue with its duration, Peak "
            "and Leq. When you end the session you'll see a summary and can export the cues or a "
            "second-by-second level history as CSV. Choose File \u203a Recordings to replay a "
            "show: the audio plays while the meter, spectrum and cue list follow along, and you "
            "can click the overview or any cue to jump there."},
        {"Privacy",
            "Ostrel Live works entirely on this computer. It records microphone audio only during "
            "a session (you can turn this off in Settings \u203a Data), keeps recordings on this "
            "computer, never uploads anything, and collects no data. It connects to the internet "
            "only to check for updates."},
    };
    return sections;
}

QVariantList HelpSections::sections() const
{
    QVariantList list;
    for (const Section& section : all()) {
        list.append(QVariantMap {{QStringLiteral("title"), QString::fromUtf8(section.title)},
            {QStringLiteral("text"), QString::fromUtf8(section.text)}});
    }
    return list;
}

} // namespace ostrel
