// Structures of libdvbpsi's, filled and given to its generators.
#include "tests/television/GeneratedTables.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>

#include "television/demonstration/SectionWriter.h"
#include "television/tables/Dvbpsi.h"
#include "television/tables/DvbTime.h"

extern "C" {
#include <dvbpsi/dr_09.h>
#include <dvbpsi/dr_0a.h>
#include <dvbpsi/dr_48.h>
#include <dvbpsi/dr_4d.h>
#include <dvbpsi/dr_52.h>
#include <dvbpsi/dr_55.h>
#include <dvbpsi/dr_56.h>
#include <dvbpsi/dr_59.h>
#include <dvbpsi/dr_5a.h>
#include <dvbpsi/eit.h>
}

namespace television::test::generated {
namespace {

using DescriptorPointer = std::unique_ptr<dvbpsi_descriptor_t, decltype(&dvbpsi_DeleteDescriptors)>;

template <std::size_t size>
void Fill(std::uint8_t (&field)[size], std::string_view text) {
    std::copy(text.begin(), text.end(), field);
}

template <class Content>
DescriptorPointer Generate(dvbpsi_descriptor_t* (*generate)(Content*, bool), Content content) {
    return {generate(&content, false), dvbpsi_DeleteDescriptors};
}

// Gives a descriptor to a table's part by the function that is for it.
template <class Part>
void Add(Part* part, dvbpsi_descriptor_t* (*add)(Part*, std::uint8_t, std::uint8_t, std::uint8_t*),
         const DescriptorPointer& descriptor) {
    add(part, descriptor->i_tag, descriptor->i_length, descriptor->p_data);
}

DescriptorPointer Service(std::uint8_t type, std::string_view provider, std::string_view name) {
    dvbpsi_service_dr_t service{};
    service.i_service_type = type;
    service.i_service_provider_name_length = static_cast<std::uint8_t>(provider.size());
    Fill(service.i_service_provider_name, provider);
    service.i_service_name_length = static_cast<std::uint8_t>(name.size());
    Fill(service.i_service_name, name);
    return Generate(dvbpsi_GenServiceDr, service);
}

DescriptorPointer StreamIdentifier(std::uint8_t tag) {
    return Generate(dvbpsi_GenStreamIdentifierDr, dvbpsi_stream_identifier_dr_t{tag});
}

DescriptorPointer Language(std::string_view language, std::uint8_t audioType) {
    dvbpsi_iso639_dr_t languages{};
    languages.i_code_count = 1;
    Fill(languages.code[0].iso_639_code, language);
    languages.code[0].i_audio_type = audioType;
    return Generate(dvbpsi_GenISO639Dr, languages);
}

DescriptorPointer Subtitling() {
    dvbpsi_subtitling_dr_t subtitling{};
    subtitling.i_subtitles_number = 1;
    dvbpsi_subtitle_t& subtitle = subtitling.p_subtitle[0];
    Fill(subtitle.i_iso6392_language_code, "fra");
    subtitle.i_subtitling_type = 0x24;  // for the hard of hearing, high definition
    subtitle.i_composition_page_id = 7;
    subtitle.i_ancillary_page_id = 8;
    return Generate(dvbpsi_GenSubtitlingDr, subtitling);
}

DescriptorPointer Teletext() {
    dvbpsi_teletext_dr_t teletext{};
    teletext.i_pages_number = 1;
    Fill(teletext.p_pages[0].i_iso6392_language_code, "deu");
    teletext.p_pages[0].i_teletext_type = 2;  // subtitles
    teletext.p_pages[0].i_teletext_magazine_number = 1;
    teletext.p_pages[0].i_teletext_page_number = 0x50;
    return Generate(dvbpsi_GenTeletextDr, teletext);
}

DescriptorPointer ConditionalAccess() {
    dvbpsi_ca_dr_t access{};
    access.i_ca_system_id = kCaSystemId;
    access.i_ca_pid = 0x1ff0;
    return Generate(dvbpsi_GenCADr, access);
}

DescriptorPointer TerrestrialDelivery() {
    dvbpsi_terr_deliv_sys_dr_t delivery{};
    delivery.i_centre_frequency = kFrequency;
    return Generate(dvbpsi_GenTerrDelivSysDr, delivery);
}

DescriptorPointer ShortEvent(std::string_view name, std::string_view text) {
    dvbpsi_short_event_dr_t event{};
    Fill(event.i_iso_639_code, "deu");
    event.i_event_name_length = static_cast<int>(name.size());
    Fill(event.i_event_name, name);
    event.i_text_length = static_cast<int>(text.size());
    Fill(event.i_text, text);
    return Generate(dvbpsi_GenShortEventDr, event);
}

// One rating, for the generator (1.3.3) mistakes the place of a second; that of extended events forgets a length.
DescriptorPointer ParentalRating() {
    dvbpsi_parental_rating_dr_t ratings{};
    ratings.i_ratings_number = 1;
    ratings.p_parental_rating[0] = {'D' << 16 | 'E' << 8 | 'U', 13};
    return Generate(dvbpsi_GenParentalRatingDr, ratings);
}

class Writer {
public:
    Writer() { dvbpsi_AttachDemux(m_handle, [](dvbpsi_t*, std::uint8_t, std::uint16_t, void*) {}, nullptr); }
    ~Writer() {
        dvbpsi_DetachDemux(m_handle);
        dvbpsi_delete(m_handle);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    dvbpsi_t* Handle() { return m_handle; }
    // Takes the sections. Where `number` and `last` are given, the one section gets these.
    void Write(std::uint16_t pid, dvbpsi_psi_section_t* sections, std::uint8_t number = 0, std::uint8_t last = 0) {
        if (last > 0) {
            sections->i_number = number;
            sections->i_last_number = last;
            dvbpsi_BuildPSISection(m_handle, sections);
        }
        for (const auto* section = sections; section; section = section->p_next)
            demonstration::Packetize({section->p_data, section->p_data + 3 + section->i_length}, pid, m_continuity[pid],
                                     m_packets);
        dvbpsi_DeletePSISections(sections);
    }
    const Packets& Written() const { return m_packets; }

private:
    dvbpsi_t* m_handle = dvbpsi_new(nullptr, DVBPSI_MSG_NONE);
    std::map<std::uint16_t, std::uint8_t> m_continuity;
    Packets m_packets;
};

void WriteAssociation(Writer& writer) {
    dvbpsi_pat_t* pat = dvbpsi_pat_new(kTsid, 3, true);
    dvbpsi_pat_program_add(pat, 0, 0x10);
    dvbpsi_pat_program_add(pat, kFilmSid, kFilmMapPid);
    dvbpsi_pat_program_add(pat, kRadioSid, kRadioMapPid);
    writer.Write(0x00, dvbpsi_pat_sections_generate(writer.Handle(), pat, 2));  // in two sections
    dvbpsi_pat_delete(pat);
}

void WriteFilmMap(Writer& writer) {
    dvbpsi_pmt_t* pmt = dvbpsi_pmt_new(kFilmSid, 4, true, kVideoPid);
    Add(pmt, dvbpsi_pmt_descriptor_add, ConditionalAccess());
    dvbpsi_pmt_es_t* video = dvbpsi_pmt_es_add(pmt, 0x1b, kVideoPid);
    Add(video, dvbpsi_pmt_es_descriptor_add, StreamIdentifier(1));
    dvbpsi_pmt_es_t* german = dvbpsi_pmt_es_add(pmt, 0x03, kGermanPid);
    Add(german, dvbpsi_pmt_es_descriptor_add, StreamIdentifier(2));
    Add(german, dvbpsi_pmt_es_descriptor_add, Language("deu", 0));
    dvbpsi_pmt_es_t* described = dvbpsi_pmt_es_add(pmt, 0x03, kDescribedPid);
    Add(described, dvbpsi_pmt_es_descriptor_add, Language("deu", 3));
    Add(dvbpsi_pmt_es_add(pmt, 0x06, kSubtitlePid), dvbpsi_pmt_es_descriptor_add, Subtitling());
    Add(dvbpsi_pmt_es_add(pmt, 0x06, kTeletextPid), dvbpsi_pmt_es_descriptor_add, Teletext());
    writer.Write(kFilmMapPid, dvbpsi_pmt_sections_generate(writer.Handle(), pmt));
    dvbpsi_pmt_delete(pmt);
}

void WriteRadioMap(Writer& writer) {
    dvbpsi_pmt_t* pmt = dvbpsi_pmt_new(kRadioSid, 4, true, kRadioPid);
    dvbpsi_pmt_es_add(pmt, 0x04, kRadioPid);
    writer.Write(kRadioMapPid, dvbpsi_pmt_sections_generate(writer.Handle(), pmt));
    dvbpsi_pmt_delete(pmt);
}

void WriteDescription(Writer& writer) {
    dvbpsi_sdt_t* sdt = dvbpsi_sdt_new(0x42, kTsid, 5, true, kOnid);
    Add(dvbpsi_sdt_service_add(sdt, kFilmSid, false, true, 4, true), dvbpsi_sdt_service_descriptor_add,
        Service(0x19, "\x01\xb7\xd7", "Gro\xfb" "es Caf\xc2" "e"));
    Add(dvbpsi_sdt_service_add(sdt, kRadioSid, false, false, 4, false), dvbpsi_sdt_service_descriptor_add,
        Service(0x02, "", "\x15" "Welle \xe2\x80\x93 nah"));
    writer.Write(0x11, dvbpsi_sdt_sections_generate(writer.Handle(), sdt));
    dvbpsi_sdt_delete(sdt);
}

void WriteNetwork(Writer& writer) {
    dvbpsi_nit_t* nit = dvbpsi_nit_new(0x40, kNid, kNid, 6, true);
    Add(dvbpsi_nit_ts_add(nit, kTsid, kOnid), dvbpsi_nit_ts_descriptor_add, TerrestrialDelivery());
    writer.Write(0x10, dvbpsi_nit_sections_generate(writer.Handle(), nit, 0x40));
    dvbpsi_nit_delete(nit);
}

// Present and following have a section each, while the generator knows only one for both.
void WriteEvent(Writer& writer, bool following) {
    dvbpsi_eit_t* eit = dvbpsi_eit_new(0x4e, kFilmSid, 7, true, kTsid, kOnid, 1, 0x4e);
    const std::int64_t start = kPresentStart + (following ? kPresentDuration : 0);
    const std::int64_t duration = following ? kFollowingDuration : kPresentDuration;
    dvbpsi_eit_event_t* event =
        dvbpsi_eit_event_add(eit, following ? 302 : 301, DvbTime(start),
                             static_cast<std::uint32_t>(BcdSeconds(duration)), following ? 1 : 4, false, 0);
    Add(event, dvbpsi_eit_event_descriptor_add,
        following ? ShortEvent("Nachrichten", "") : ShortEvent("Der Fall", "Krimi"));
    if (!following) Add(event, dvbpsi_eit_event_descriptor_add, ParentalRating());
    writer.Write(0x12, dvbpsi_eit_sections_generate(writer.Handle(), eit, 0x4e), following ? 1 : 0, 1);
    dvbpsi_eit_delete(eit);
}

}  // namespace

Packets Multiplex() {
    Writer writer;
    WriteAssociation(writer);
    WriteFilmMap(writer);
    WriteRadioMap(writer);
    WriteDescription(writer);
    WriteNetwork(writer);
    WriteEvent(writer, false);
    WriteEvent(writer, true);
    return writer.Written();
}

}  // namespace television::test::generated
