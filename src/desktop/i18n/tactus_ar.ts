<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en_US">
<context>
    <name>BpmWindow</name>
    <message>
        <source>Undone: %1</source>
        <translation>تم التراجع عن: %1</translation>
    </message>
    <message>
        <source>Done again: %1</source>
        <translation>أُعيد: %1</translation>
    </message>
    <message>
        <source>Tactus</source>
        <translation>Tactus</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>الملفات</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>إضافة</translation>
    </message>
    <message>
        <source>Add files and folders</source>
        <translation>إضافة ملفات ومجلدات</translation>
    </message>
    <message>
        <source>Analyze</source>
        <translation>تحليل</translation>
    </message>
    <message>
        <source>Analyze the files without a tempo</source>
        <translation>تحليل الملفات التي لا سرعة لها</translation>
    </message>
    <message>
        <source>Analyze all files again</source>
        <translation>إعادة تحليل كل الملفات</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>إيقاف</translation>
    </message>
    <message>
        <source>Stop analyzing</source>
        <translation>إيقاف التحليل</translation>
    </message>
    <message>
        <source>Open the guide</source>
        <translation>فتح الدليل</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Copy the selected rows</source>
        <translation>نسخ الصفوف المحددة</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>إنهاء</translation>
    </message>
    <message>
        <source>Quit Tactus</source>
        <translation>إنهاء Tactus</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>تحديد الكل</translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation>شريط الأدوات</translation>
    </message>
    <message>
        <source>Tactus home page</source>
        <translation>صفحة Tactus الرئيسية</translation>
    </message>
    <message>
        <source>Open the home page</source>
        <translation>فتح الصفحة الرئيسية</translation>
    </message>
    <message>
        <source>No program could be found to open %1.</source>
        <translation>لم يُعثر على برنامج لفتح %1.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
    <message>
        <source>Analyze again</source>
        <translation>إعادة التحليل</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tempo(s) came with the files. Replace them?</source>
        <translation>
            <numerusform>لم تأتِ أي سرعة مع الملفات. هل تُستبدل؟</numerusform>
            <numerusform>جاءت سرعة واحدة مع الملفات. هل تُستبدل؟</numerusform>
            <numerusform>جاءت سرعتان مع الملفات. هل تُستبدلان؟</numerusform>
            <numerusform>جاءت %Ln سرعات مع الملفات. هل تُستبدل؟</numerusform>
            <numerusform>جاءت %Ln سرعة مع الملفات. هل تُستبدل؟</numerusform>
            <numerusform>جاءت %Ln سرعة مع الملفات. هل تُستبدل؟</numerusform>
        </translation>
    </message>
    <message>
        <source>Tactus did not find them; they may have been set by hand.</source>
        <translation>لم يجدها Tactus، وربما حُدّدت يدويًا.</translation>
    </message>
    <message>
        <source>MP3 files get the new tempo in their tags.</source>
        <translation>تُكتب السرعة الجديدة في وسوم ملفات MP3.</translation>
    </message>
    <message>
        <source>Analyze all again</source>
        <translation>إعادة تحليل الكل</translation>
    </message>
    <message>
        <source>&amp;Stop and close</source>
        <translation>إيقاف وإغلاق</translation>
    </message>
    <message>
        <source>&amp;Keep going</source>
        <translation>متابعة</translation>
    </message>
    <message>
        <source>Analyze all again …</source>
        <translation>إعادة تحليل الكل …</translation>
    </message>
    <message>
        <source>Select all rows</source>
        <translation>تحديد كل الصفوف</translation>
    </message>
    <message>
        <source>Close window</source>
        <translation>إغلاق النافذة</translation>
    </message>
    <message>
        <source>Close the window</source>
        <translation>إغلاق النافذة</translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation>ترتيب حسب: %1</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>Everything else</source>
        <translation>كل ما عدا ذلك</translation>
    </message>
    <message>
        <source>Bring back</source>
        <translation>إرجاع</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>إخفاء</translation>
    </message>
    <message>
        <source>Hide the selected rows and leave them out</source>
        <translation>إخفاء الصفوف المحددة وتركها خارج العمل</translation>
    </message>
    <message>
        <source>Bring back what was hidden last</source>
        <translation>إرجاع آخر ما أُخفي</translation>
    </message>
    <message>
        <source>Show the song</source>
        <translation>إظهار الأغنية</translation>
    </message>
    <message>
        <source>Show or hide the song of the selected row</source>
        <translation>إظهار أغنية الصف المحدد أو إخفاؤها</translation>
    </message>
    <message>
        <source>Table or song</source>
        <translation>الجدول أو الأغنية</translation>
    </message>
    <message>
        <source>Go from the table to the song and back</source>
        <translation>الانتقال من الجدول إلى الأغنية والعودة</translation>
    </message>
    <message>
        <source>Preferences …</source>
        <translation>التفضيلات …</translation>
    </message>
    <message>
        <source>What is to be otherwise than at first</source>
        <translation>ما ينبغي أن يختلف عن الحال الأولى</translation>
    </message>
    <message>
        <source>Add them</source>
        <translation>إضافتها</translation>
    </message>
    <message>
        <source>Guide</source>
        <translation>الدليل</translation>
    </message>
    <message>
        <source>Keys …</source>
        <translation>الاختصارات …</translation>
    </message>
    <message>
        <source>Show every key</source>
        <translation>عرض كل الاختصارات</translation>
    </message>
    <message>
        <source>%1 – Tactus</source>
        <translation>%1 – Tactus</translation>
    </message>
    <message>
        <source>Tactus is done</source>
        <translation>أنهى Tactus عمله</translation>
    </message>
    <message>
        <source>Show</source>
        <translation>عرض</translation>
    </message>
    <message>
        <source>Folders that could not be read</source>
        <translation>مجلدات تعذّرت قراءتها</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>المجلد</translation>
    </message>
    <message>
        <source>First and last row</source>
        <translation>الصف الأول والأخير</translation>
    </message>
    <message>
        <source>Filters</source>
        <translation>عوامل التصفية</translation>
    </message>
    <message>
        <source>In the song: beat by beat</source>
        <translation>في الأغنية: نبضة نبضة</translation>
    </message>
    <message>
        <source>In the song: measure by measure</source>
        <translation>في الأغنية: مازورة مازورة</translation>
    </message>
    <message>
        <source>In the song: to its start and end</source>
        <translation>في الأغنية: إلى البداية وإلى النهاية</translation>
    </message>
    <message>
        <source>In the song: play and pause</source>
        <translation>في الأغنية: تشغيل وإيقاف</translation>
    </message>
    <message>
        <source>In the song: tap the tempo</source>
        <translation>في الأغنية: نقر السرعة</translation>
    </message>
    <message>
        <source>In the song: take the tapped tempo</source>
        <translation>في الأغنية: أخذ السرعة المنقورة</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>الاختصارات</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>الاختصار</translation>
    </message>
    <message>
        <source>Does</source>
        <translation>الوظيفة</translation>
    </message>
    <message>
        <source>Type the tempo</source>
        <translation>كتابة السرعة</translation>
    </message>
    <message>
        <source>Type the tempo of the row</source>
        <translation>كتابة سرعة الصف</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>تراجع</translation>
    </message>
    <message>
        <source>Take back the last step</source>
        <translation>التراجع عن الخطوة الأخيرة</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>إعادة</translation>
    </message>
    <message>
        <source>Do again what was taken back</source>
        <translation>إعادة ما تم التراجع عنه</translation>
    </message>
    <message>
        <source>Correct the tempo</source>
        <translation>تصحيح السرعة</translation>
    </message>
    <message numerus="yes">
        <source>hiding %Ln file(s)</source>
        <translation>
            <numerusform>إخفاء لا شيء</numerusform>
            <numerusform>إخفاء ملف واحد</numerusform>
            <numerusform>إخفاء ملفين</numerusform>
            <numerusform>إخفاء %Ln ملفات</numerusform>
            <numerusform>إخفاء %Ln ملفًا</numerusform>
            <numerusform>إخفاء %Ln ملف</numerusform>
        </translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>تراجع عن: %1</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>إعادة: %1</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>تصفية</translation>
    </message>
    <message>
        <source>Find rows by words and more</source>
        <translation>البحث عن صفوف بالكلمات وغيرها</translation>
    </message>
    <message>
        <source>Next reading of the tempo</source>
        <translation>القراءة التالية للسرعة</translation>
    </message>
    <message>
        <source>Take the next likely tempo of the row</source>
        <translation>أخذ السرعة المرجّحة التالية للصف</translation>
    </message>
    <message>
        <source>Export …</source>
        <translation>تصدير …</translation>
    </message>
    <message>
        <source>Write the rows into a file</source>
        <translation>كتابة الصفوف في ملف</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Tempo %1</source>
        <translation>السرعة %1</translation>
    </message>
</context>
<context>
    <name>CAccentsView</name>
    <message>
        <source>Accents of a measure&apos;s half beats, in percent: %1</source>
        <translation>نبر أنصاف النبضات في المازورة، بالمئة: %1</translation>
    </message>
</context>
<context>
    <name>CChipsLine</name>
    <message>
        <source>Filters</source>
        <translation>عوامل التصفية</translation>
    </message>
    <message>
        <source>All %1</source>
        <translation>الكل %1</translation>
    </message>
    <message>
        <source>To do %1</source>
        <translation>المتبقّية %1</translation>
    </message>
    <message>
        <source>Problems %1</source>
        <translation>المشكلات %1</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>تصفية</translation>
    </message>
    <message>
        <source>Words of title, artist or file; 120-130; key:8A; state:problem</source>
        <translation>كلمات من العنوان أو الفنان أو الملف؛ ⁦120-130⁩؛ ⁦key:8A⁩؛ ⁦state:problem⁩</translation>
    </message>
    <message>
        <source>To review %1</source>
        <translation>للمراجعة %1</translation>
    </message>
    <message>
        <source>By hand %1</source>
        <translation>اليدوية %1</translation>
    </message>
</context>
<context>
    <name>CColumnsMenu</name>
    <message>
        <source>Columns</source>
        <translation>الأعمدة</translation>
    </message>
    <message>
        <source>As at first</source>
        <translation>كما في البداية</translation>
    </message>
</context>
<context>
    <name>CEmptyHint</name>
    <message>
        <source>Drop files and folders here, or</source>
        <translation>أفلت ملفات ومجلدات هنا، أو</translation>
    </message>
    <message>
        <source>Add music …</source>
        <translation>إضافة موسيقى …</translation>
    </message>
    <message>
        <source>Nothing here</source>
        <translation>لا شيء هنا</translation>
    </message>
    <message>
        <source>Finds the tempo of music and writes it into MP3 tags</source>
        <translation>يجد سرعة الموسيقى ويكتبها في وسوم ملفات MP3</translation>
    </message>
    <message>
        <source>Only look, write nothing …</source>
        <translation>استعراض فقط دون كتابة أي شيء …</translation>
    </message>
    <message>
        <source>Add music, and change no file until the window is closed</source>
        <translation>إضافة موسيقى دون تغيير أي ملف حتى تُغلق النافذة</translation>
    </message>
    <message>
        <source>every kind of music file</source>
        <translation>كل أنواع ملفات الموسيقى</translation>
    </message>
    <message>
        <source>wav, mp3, aiff, aif, caf and m4a</source>
        <translation>ملفات wav و mp3 و aiff و aif و caf و m4a</translation>
    </message>
    <message>
        <source>only mp3 files are written</source>
        <translation>لا تُكتب إلا ملفات mp3</translation>
    </message>
    <message>
        <source>Finds the tempo of music</source>
        <translation>يجد سرعة الموسيقى</translation>
    </message>
    <message>
        <source>nothing is written</source>
        <translation>لا يُكتب شيء</translation>
    </message>
    <message>
        <source>Finds the tempo of music and writes it into the tags</source>
        <translation>يجد سرعة الموسيقى ويكتبها في الوسوم</translation>
    </message>
    <message>
        <source>other kinds than mp3 are written too</source>
        <translation>تُكتب أيضًا أنواع غير mp3</translation>
    </message>
</context>
<context>
    <name>CExportDialog</name>
    <message>
        <source>Export</source>
        <translation>تصدير</translation>
    </message>
    <message numerus="yes">
        <source>%Ln selected row(s)</source>
        <translation>
            <numerusform>لا صفوف محددة</numerusform>
            <numerusform>صف واحد محدد</numerusform>
            <numerusform>صفان محددان</numerusform>
            <numerusform>%Ln صفوف محددة</numerusform>
            <numerusform>%Ln صفًا محددًا</numerusform>
            <numerusform>%Ln صف محدد</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>All %Ln row(s)</source>
        <translation>
            <numerusform>لا صفوف</numerusform>
            <numerusform>صف واحد</numerusform>
            <numerusform>الصفّان كلاهما</numerusform>
            <numerusform>كل الصفوف (%Ln صفوف)</numerusform>
            <numerusform>كل الصفوف (%Ln صفًا)</numerusform>
            <numerusform>كل الصفوف (%Ln صف)</numerusform>
        </translation>
    </message>
    <message>
        <source>Table, commas between (csv)</source>
        <translation>جدول تفصل بين أعمدته فواصل (csv)</translation>
    </message>
    <message>
        <source>Table, tabs between (tsv)</source>
        <translation>جدول تفصل بين أعمدته علامات جدولة (tsv)</translation>
    </message>
    <message>
        <source>JSON, one object a line (jsonl)</source>
        <translation>⁦JSON⁩، كائن واحد في كل سطر (jsonl)</translation>
    </message>
    <message>
        <source>&amp;Rows:</source>
        <translation>الصفوف:</translation>
    </message>
    <message>
        <source>&amp;Format:</source>
        <translation>التنسيق:</translation>
    </message>
    <message>
        <source>The first lines</source>
        <translation>السطور الأولى</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Save as …</source>
        <translation>حفظ باسم …</translation>
    </message>
    <message>
        <source>Save as</source>
        <translation>حفظ باسم</translation>
    </message>
    <message>
        <source>tempos</source>
        <translation>tempos</translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) exported to “%1”.</source>
        <translation>
            <numerusform>لم يُصدَّر أي صف إلى «%1».</numerusform>
            <numerusform>صُدِّر صف واحد إلى «%1».</numerusform>
            <numerusform>صُدِّر صفان إلى «%1».</numerusform>
            <numerusform>صُدِّرت %Ln صفوف إلى «%1».</numerusform>
            <numerusform>صُدِّر %Ln صفًا إلى «%1».</numerusform>
            <numerusform>صُدِّر %Ln صف إلى «%1».</numerusform>
        </translation>
    </message>
    <message>
        <source>“%1” could not be written: %2</source>
        <translation>تعذّرت كتابة «%1»: %2</translation>
    </message>
    <message>
        <source>Beat grids for rekordbox (xml)</source>
        <translation>شبكات النبضات لبرنامج rekordbox (xml)</translation>
    </message>
    <message>
        <source>Beats as labels for Audacity (txt)</source>
        <translation>النبضات علامات لبرنامج Audacity (txt)</translation>
    </message>
    <message>
        <source>Tempo map for sequencers (mid)</source>
        <translation>خريطة السرعة لبرامج التأليف (mid)</translation>
    </message>
    <message>
        <source>Annotations for music research (jams)</source>
        <translation>تعليقات توضيحية لأبحاث الموسيقى (jams)</translation>
    </message>
    <message>
        <source>All that is known, as JSON (jsonl)</source>
        <translation>كل ما هو معروف، بصيغة JSON (jsonl)</translation>
    </message>
    <message>
        <source>Playlist (m3u8)</source>
        <translation>قائمة تشغيل (m3u8)</translation>
    </message>
    <message>
        <source>Drawing of the song (svg)</source>
        <translation>رسم للأغنية (svg)</translation>
    </message>
    <message>
        <source>Save in …</source>
        <translation>حفظ في …</translation>
    </message>
    <message>
        <source>Folder for the files</source>
        <translation>مجلد الملفات</translation>
    </message>
    <message>
        <source>Finding beat grids: %L1 of %L2 …</source>
        <translation>يجري البحث عن شبكات النبضات: %L1 من %L2 …</translation>
    </message>
    <message>
        <source>Looking for beat grids …</source>
        <translation>تجري مراجعة شبكات النبضات …</translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) can&apos;t be heard and will be missing.</source>
        <translation>
            <numerusform>تُسمع الصفوف كلها (%1).</numerusform>
            <numerusform>صف واحد من %1 لا يُسمع، ولن يكون في الملف.</numerusform>
            <numerusform>صفان من %1 لا يُسمعان، ولن يكونا في الملف.</numerusform>
            <numerusform>%Ln صفوف من %1 لا تُسمع، ولن تكون في الملف.</numerusform>
            <numerusform>%Ln صفًا من %1 لا تُسمع، ولن تكون في الملف.</numerusform>
            <numerusform>%Ln صف من %1 لا تُسمع، ولن تكون في الملف.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln of %1 row(s) have no beat grid yet and will be missing.</source>
        <translation>
            <numerusform>للصفوف كلها (%1) شبكات نبضات.</numerusform>
            <numerusform>صف واحد من %1 بلا شبكة نبضات بعد، ولن يكون في الملف.</numerusform>
            <numerusform>صفان من %1 بلا شبكة نبضات بعد، ولن يكونا في الملف.</numerusform>
            <numerusform>%Ln صفوف من %1 بلا شبكة نبضات بعد، ولن تكون في الملف.</numerusform>
            <numerusform>%Ln صفًا من %1 بلا شبكة نبضات بعد، ولن تكون في الملف.</numerusform>
            <numerusform>%Ln صف من %1 بلا شبكة نبضات بعد، ولن تكون في الملف.</numerusform>
        </translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>إيقاف</translation>
    </message>
    <message>
        <source>This song has no beat grid yet.</source>
        <translation>ليس لهذه الأغنية شبكة نبضات بعد.</translation>
    </message>
    <message>
        <source>This song can&apos;t be heard.</source>
        <translation>لا تُسمع هذه الأغنية.</translation>
    </message>
    <message>
        <source>Find beat grids</source>
        <translation>البحث عن شبكات النبضات</translation>
    </message>
    <message>
        <source>What goes into this file is no text.</source>
        <translation>ما يُكتب في هذا الملف ليس نصًا.</translation>
    </message>
    <message>
        <source>There are no beats to be written.</source>
        <translation>لا توجد نبضات تُكتب.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln song(s) exported to “%1”.</source>
        <translation>
            <numerusform>لم تُصدَّر أي أغنية إلى «%1».</numerusform>
            <numerusform>صُدِّرت أغنية واحدة إلى «%1».</numerusform>
            <numerusform>صُدِّرت أغنيتان إلى «%1».</numerusform>
            <numerusform>صُدِّرت %Ln أغانٍ إلى «%1».</numerusform>
            <numerusform>صُدِّرت %Ln أغنية إلى «%1».</numerusform>
            <numerusform>صُدِّرت %Ln أغنية إلى «%1».</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln row(s) left out.</source>
        <translation>
            <numerusform>لم يُترك أي صف.</numerusform>
            <numerusform>تُرك صف واحد.</numerusform>
            <numerusform>تُرك صفان.</numerusform>
            <numerusform>تُركت %Ln صفوف.</numerusform>
            <numerusform>تُرك %Ln صفًا.</numerusform>
            <numerusform>تُرك %Ln صف.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CFileTableModel</name>
    <message>
        <source>Title</source>
        <translation>العنوان</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>الفنان</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>السرعة</translation>
    </message>
    <message>
        <source>reading</source>
        <translation>يُقرأ</translation>
    </message>
    <message>
        <source>still to be analyzed again</source>
        <translation>لا يزال ينتظر إعادة التحليل</translation>
    </message>
    <message>
        <source>This tempo is still to be analyzed again.</source>
        <translation>لا تزال هذه السرعة تنتظر إعادة التحليل.</translation>
    </message>
    <message>
        <source>set by hand</source>
        <translation>محددة يدويًا</translation>
    </message>
    <message>
        <source>not in the file</source>
        <translation>ليست في الملف</translation>
    </message>
    <message>
        <source>This tempo was set by hand.</source>
        <translation>حُدّدت هذه السرعة يدويًا.</translation>
    </message>
    <message>
        <source>The file doesn&apos;t have it in its tag.</source>
        <translation>ليست مكتوبة في وسم الملف.</translation>
    </message>
</context>
<context>
    <name>CListDialog</name>
    <message>
        <source>Close</source>
        <translation>إغلاق</translation>
    </message>
</context>
<context>
    <name>COpenPanel</name>
    <message>
        <source>Add files and folders</source>
        <translation>إضافة ملفات ومجلدات</translation>
    </message>
    <message>
        <source>Music files and folders</source>
        <translation>ملفات موسيقى ومجلدات</translation>
    </message>
    <message>
        <source>Add this folder</source>
        <translation>إضافة هذا المجلد</translation>
    </message>
    <message>
        <source>Add the folder that is open here, with everything below it</source>
        <translation>إضافة المجلد المفتوح هنا بكل ما فيه</translation>
    </message>
    <message>
        <source>There is no “%1” here.</source>
        <translation>لا يوجد «%1» هنا.</translation>
    </message>
    <message>
        <source>“%1” is neither a folder nor a music file of a kind that is read.</source>
        <translation>«%1» ليس مجلدًا ولا ملفًا موسيقيًا من نوع يمكن قراءته.</translation>
    </message>
    <message>
        <source>“%1” can&apos;t be chosen here, only wav, mp3 and aiff files and folders. Other kinds come in with their folder, or when they are dropped on the window.</source>
        <translation>لا يمكن اختيار «%1» هنا، بل المجلدات وملفات wav و mp3 و aiff فقط. تدخل الأنواع الأخرى مع مجلداتها، أو عند إفلاتها على النافذة.</translation>
    </message>
</context>
<context>
    <name>CPreferencesDialog</name>
    <message>
        <source>Preferences</source>
        <translation>التفضيلات</translation>
    </message>
    <message>
        <source>Files</source>
        <translation>الملفات</translation>
    </message>
    <message>
        <source>Add &amp;other kinds too: flac, ogg, opus, wma and all that can be read</source>
        <translation>إضافة الأنواع الأخرى أيضًا: flac و ogg و opus و wma وكل ما تمكن قراءته</translation>
    </message>
    <message>
        <source>Tempo, from the next analysis on</source>
        <translation>السرعة، بدءًا من التحليل التالي</translation>
    </message>
    <message>
        <source>&amp;Decimals, in the table and in tags:</source>
        <translation>الخانات العشرية في الجدول وفي الوسوم:</translation>
    </message>
    <message>
        <source>Take the &amp;likeliest reading, such as half or double</source>
        <translation>أخذ القراءة الأرجح، كالنصف أو الضعف</translation>
    </message>
    <message>
        <source>Where there is no tempo, show &amp;zero, and store it when there is no beat</source>
        <translation>إظهار صفر حيث لا سرعة، وحفظه إذا لم تكن هناك نبضات</translation>
    </message>
    <message>
        <source>Halve or double into this &amp;range:</source>
        <translation>التنصيف أو المضاعفة إلى هذا النطاق:</translation>
    </message>
    <message>
        <source>Slowest tempo</source>
        <translation>أبطأ سرعة</translation>
    </message>
    <message>
        <source>Fastest tempo</source>
        <translation>أعلى سرعة</translation>
    </message>
    <message>
        <source>Tags</source>
        <translation>الوسوم</translation>
    </message>
    <message>
        <source>Only &amp;look, write nothing</source>
        <translation>استعراض فقط دون كتابة أي شيء</translation>
    </message>
    <message>
        <source>&amp;Write other kinds than MP3 too, where that can be done</source>
        <translation>كتابة أنواع غير MP3 أيضًا حيثما أمكن</translation>
    </message>
    <message>
        <source>&amp;Keep the time of a file&apos;s last change</source>
        <translation>الإبقاء على وقت آخر تغيير للملف</translation>
    </message>
    <message>
        <source>Window</source>
        <translation>النافذة</translation>
    </message>
    <message>
        <source>Re&amp;member its size and columns</source>
        <translation>تذكّر حجمها وأعمدتها</translation>
    </message>
    <message>
        <source>Nothing is stored: everything is as it came.</source>
        <translation>لم يُحفظ شيء: كل شيء كما كان في البداية.</translation>
    </message>
    <message>
        <source>Stored in %1:</source>
        <translation>محفوظ في %1:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Restore defaults</source>
        <translation>استعادة الافتراضيات</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
    </message>
</context>
<context>
    <name>CSongPane</name>
    <message>
        <source>Song</source>
        <translation>الأغنية</translation>
    </message>
    <message>
        <source>Whole song</source>
        <translation>الأغنية كاملة</translation>
    </message>
    <message>
        <source>Some measures</source>
        <translation>بعض المازورات</translation>
    </message>
    <message>
        <source>Accents A</source>
        <translation>النبر A</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Select a song to see it here.</source>
        <translation>حدّد أغنية لتراها هنا.</translation>
    </message>
    <message>
        <source>Reading “%1” …</source>
        <translation>تجري قراءة «%1» …</translation>
    </message>
    <message>
        <source>There is no sound in it.</source>
        <translation>لا صوت فيه.</translation>
    </message>
    <message>
        <source>%1 – %2</source>
        <translation>%1 – %2</translation>
    </message>
    <message>
        <source>There is no device to play on.</source>
        <translation>لا يوجد جهاز للتشغيل عليه.</translation>
    </message>
    <message>
        <source>Playing needs the package tactus-desktop-sound.</source>
        <translation>يحتاج التشغيل إلى الحزمة tactus-desktop-sound.</translation>
    </message>
    <message>
        <source>Play with clicks on the beats (%1)</source>
        <translation>تشغيل مع تكّات على النبضات (%1)</translation>
    </message>
    <message>
        <source>Stop playing</source>
        <translation>إيقاف التشغيل</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>تشغيل</translation>
    </message>
</context>
<context>
    <name>CSoundControls</name>
    <message>
        <source>Click</source>
        <translation>التكّة</translation>
    </message>
    <message>
        <source>Music</source>
        <translation>الموسيقى</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>التكرار</translation>
    </message>
    <message>
        <source>Measures that are played again and again</source>
        <translation>مازورات تُعاد مرة بعد مرة</translation>
    </message>
    <message>
        <source>No loop</source>
        <translation>بلا تكرار</translation>
    </message>
    <message numerus="yes">
        <source>Loop of %Ln</source>
        <translation>
            <numerusform>بلا تكرار</numerusform>
            <numerusform>تكرار مازورة واحدة</numerusform>
            <numerusform>تكرار مازورتين</numerusform>
            <numerusform>تكرار %Ln مازورات</numerusform>
            <numerusform>تكرار %Ln مازورة</numerusform>
            <numerusform>تكرار %Ln مازورة</numerusform>
        </translation>
    </message>
    <message>
        <source>Level of %1</source>
        <translation>مستوى الصوت: %1</translation>
    </message>
</context>
<context>
    <name>CStatusLine</name>
    <message>
        <source>Status bar</source>
        <translation>شريط الحالة</translation>
    </message>
    <message>
        <source>Overall progress</source>
        <translation>التقدم الإجمالي</translation>
    </message>
    <message>
        <source>Only looking: nothing is written</source>
        <translation>استعراض فقط: لا يُكتب شيء</translation>
    </message>
</context>
<context>
    <name>CTempoDelegate</name>
    <message>
        <source>Tempo</source>
        <translation>السرعة</translation>
    </message>
    <message>
        <source>A tempo is a number from %1 to %2.</source>
        <translation>السرعة عدد من %1 إلى %2.</translation>
    </message>
</context>
<context>
    <name>CTempoLine</name>
    <message>
        <source>Tap</source>
        <translation>نقر</translation>
    </message>
    <message>
        <source>Tap the tempo (T); Enter takes it</source>
        <translation>انقر السرعة (T)، ثم Enter لأخذها</translation>
    </message>
    <message numerus="yes">
        <source>%Ln tap(s) …</source>
        <translation>
            <numerusform>لا نقرات …</numerusform>
            <numerusform>نقرة واحدة …</numerusform>
            <numerusform>نقرتان …</numerusform>
            <numerusform>%Ln نقرات …</numerusform>
            <numerusform>%Ln نقرة …</numerusform>
            <numerusform>%Ln نقرة …</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln tap(s): %1 ± %2, Enter takes %3</source>
        <translation>
            <numerusform>لا نقرات: %1 ± %2، Enter لأخذ %3</numerusform>
            <numerusform>نقرة واحدة: %1 ± %2، Enter لأخذ %3</numerusform>
            <numerusform>نقرتان: %1 ± %2، Enter لأخذ %3</numerusform>
            <numerusform>%Ln نقرات: %1 ± %2، Enter لأخذ %3</numerusform>
            <numerusform>%Ln نقرة: %1 ± %2، Enter لأخذ %3</numerusform>
            <numerusform>%Ln نقرة: %1 ± %2، Enter لأخذ %3</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>CorrectionTexts</name>
    <message>
        <source>its tag says something else by now</source>
        <translation>في وسمه الآن شيء آخر</translation>
    </message>
    <message>
        <source>the file is gone</source>
        <translation>لم يعد الملف موجودًا</translation>
    </message>
    <message>
        <source>its tag can&apos;t be read</source>
        <translation>تتعذّر قراءة وسمه</translation>
    </message>
    <message numerus="yes">
        <source>%Ln stored tempo(s)</source>
        <translation>
            <numerusform>حفظ لا شيء</numerusform>
            <numerusform>حفظ سرعة واحدة</numerusform>
            <numerusform>حفظ سرعتين</numerusform>
            <numerusform>حفظ %Ln سرعات</numerusform>
            <numerusform>حفظ %Ln سرعة</numerusform>
            <numerusform>حفظ %Ln سرعة</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 on %Ln file(s)</source>
        <translation>
            <numerusform>%1 على لا شيء</numerusform>
            <numerusform>%1 على ملف واحد</numerusform>
            <numerusform>%1 على ملفين</numerusform>
            <numerusform>%1 على %Ln ملفات</numerusform>
            <numerusform>%1 على %Ln ملفًا</numerusform>
            <numerusform>%1 على %Ln ملف</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>tempo of %Ln file(s)</source>
        <translation>
            <numerusform>سرعة لا شيء</numerusform>
            <numerusform>سرعة ملف واحد</numerusform>
            <numerusform>سرعة ملفين</numerusform>
            <numerusform>سرعة %Ln ملفات</numerusform>
            <numerusform>سرعة %Ln ملفًا</numerusform>
            <numerusform>سرعة %Ln ملف</numerusform>
        </translation>
    </message>
    <message>
        <source>No row is selected.</source>
        <translation>لا صف محددًا.</translation>
    </message>
    <message>
        <source>The file is being analyzed.</source>
        <translation>يجري تحليل الملف.</translation>
    </message>
    <message>
        <source>There is no tempo yet.</source>
        <translation>لا سرعة بعد.</translation>
    </message>
    <message>
        <source>A tempo would be below %1.</source>
        <translation>ستقلّ سرعة عن %1.</translation>
    </message>
    <message>
        <source>A tempo would be above %1.</source>
        <translation>ستزيد سرعة على %1.</translation>
    </message>
    <message>
        <source>“%1” was left as it is: %2.</source>
        <translation>تُرك «%1» كما هو: %2.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) were left as they are, the first of them “%1”: %2.</source>
        <translation>
            <numerusform>لم يُترك أي ملف كما هو، «%1»: %2.</numerusform>
            <numerusform>تُرك ملف واحد كما هو، «%1»: %2.</numerusform>
            <numerusform>تُرك ملفان كما هما، أولهما «%1»: %2.</numerusform>
            <numerusform>تُركت %Ln ملفات كما هي، أولها «%1»: %2.</numerusform>
            <numerusform>تُرك %Ln ملفًا كما هي، أولها «%1»: %2.</numerusform>
            <numerusform>تُرك %Ln ملف كما هي، أولها «%1»: %2.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1٪؜</translation>
    </message>
</context>
<context>
    <name>MoreColumns</name>
    <message>
        <source>reading</source>
        <translation>يُقرأ</translation>
    </message>
    <message>
        <source>analyzing</source>
        <translation>يُحلَّل</translation>
    </message>
    <message>
        <source>to do</source>
        <translation>متبقٍّ</translation>
    </message>
    <message>
        <source>by hand</source>
        <translation>يدويًا</translation>
    </message>
    <message>
        <source>from the tag</source>
        <translation>من الوسم</translation>
    </message>
    <message>
        <source>no beat</source>
        <translation>بلا نبضات</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>فشل</translation>
    </message>
    <message>
        <source>damaged</source>
        <translation>تالف</translation>
    </message>
    <message>
        <source>to review</source>
        <translation>للمراجعة</translation>
    </message>
    <message>
        <source>analyzed</source>
        <translation>محلَّل</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>نعم</translation>
    </message>
    <message>
        <source>no</source>
        <translation>لا</translation>
    </message>
    <message>
        <source>Or</source>
        <comment>another tempo</comment>
        <translation>أو</translation>
    </message>
    <message>
        <source>Other reading</source>
        <translation>قراءة أخرى</translation>
    </message>
    <message>
        <source>Key</source>
        <comment>of music</comment>
        <translation>السلّم</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>المدة</translation>
    </message>
    <message>
        <source>State</source>
        <translation>الحالة</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>النوع</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>المجلد</translation>
    </message>
    <message>
        <source>Stored</source>
        <translation>محفوظ</translation>
    </message>
</context>
<context>
    <name>PaneTexts</name>
    <message>
        <source>in the tag: %1</source>
        <translation>في الوسم: %1</translation>
    </message>
    <message>
        <source>no tempo in the tag</source>
        <translation>لا سرعة في الوسم</translation>
    </message>
    <message>
        <source>C minor</source>
        <translation>دو الصغير</translation>
    </message>
    <message>
        <source>C♯ minor</source>
        <translation>دو دييز الصغير</translation>
    </message>
    <message>
        <source>D minor</source>
        <translation>ري الصغير</translation>
    </message>
    <message>
        <source>E♭ minor</source>
        <translation>مي بيمول الصغير</translation>
    </message>
    <message>
        <source>E minor</source>
        <translation>مي الصغير</translation>
    </message>
    <message>
        <source>F minor</source>
        <translation>فا الصغير</translation>
    </message>
    <message>
        <source>F♯ minor</source>
        <translation>فا دييز الصغير</translation>
    </message>
    <message>
        <source>G minor</source>
        <translation>صول الصغير</translation>
    </message>
    <message>
        <source>G♯ minor</source>
        <translation>صول دييز الصغير</translation>
    </message>
    <message>
        <source>A minor</source>
        <translation>لا الصغير</translation>
    </message>
    <message>
        <source>B♭ minor</source>
        <translation>سي بيمول الصغير</translation>
    </message>
    <message>
        <source>B minor</source>
        <translation>سي الصغير</translation>
    </message>
    <message>
        <source>C major</source>
        <translation>دو الكبير</translation>
    </message>
    <message>
        <source>D♭ major</source>
        <translation>ري بيمول الكبير</translation>
    </message>
    <message>
        <source>D major</source>
        <translation>ري الكبير</translation>
    </message>
    <message>
        <source>E♭ major</source>
        <translation>مي بيمول الكبير</translation>
    </message>
    <message>
        <source>E major</source>
        <translation>مي الكبير</translation>
    </message>
    <message>
        <source>F major</source>
        <translation>فا الكبير</translation>
    </message>
    <message>
        <source>F♯ major</source>
        <translation>فا دييز الكبير</translation>
    </message>
    <message>
        <source>G major</source>
        <translation>صول الكبير</translation>
    </message>
    <message>
        <source>A♭ major</source>
        <translation>لا بيمول الكبير</translation>
    </message>
    <message>
        <source>A major</source>
        <translation>لا الكبير</translation>
    </message>
    <message>
        <source>B♭ major</source>
        <translation>سي بيمول الكبير</translation>
    </message>
    <message>
        <source>B major</source>
        <translation>سي الكبير</translation>
    </message>
    <message>
        <source>%1 BPM found</source>
        <translation>وُجدت %1 BPM</translation>
    </message>
    <message>
        <source>measure %L1, beat %L2</source>
        <translation>المازورة %L1، النبضة %L2</translation>
    </message>
    <message>
        <source>No beat was found.</source>
        <translation>لم يُعثر على نبضات.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln measure(s)</source>
        <translation>
            <numerusform>لا مازورات</numerusform>
            <numerusform>مازورة واحدة</numerusform>
            <numerusform>مازورتان</numerusform>
            <numerusform>%Ln مازورات</numerusform>
            <numerusform>%Ln مازورة</numerusform>
            <numerusform>%Ln مازورة</numerusform>
        </translation>
    </message>
    <message>
        <source>The intro ends at %1.</source>
        <translation>تنتهي المقدّمة عند %1.</translation>
    </message>
    <message>
        <source>The outro starts at %1.</source>
        <translation>تبدأ الخاتمة عند %1.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) into the song: %1.</source>
        <translation>
            <numerusform>لا نقاط مزج إلى الأغنية: %1.</numerusform>
            <numerusform>نقطة مزج واحدة إلى الأغنية: %1.</numerusform>
            <numerusform>نقطتا مزج إلى الأغنية: %1.</numerusform>
            <numerusform>%Ln نقاط مزج إلى الأغنية: %1.</numerusform>
            <numerusform>%Ln نقطة مزج إلى الأغنية: %1.</numerusform>
            <numerusform>%Ln نقطة مزج إلى الأغنية: %1.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln mix point(s) out of it: %1.</source>
        <translation>
            <numerusform>لا نقاط مزج منها: %1.</numerusform>
            <numerusform>نقطة مزج واحدة منها: %1.</numerusform>
            <numerusform>نقطتا مزج منها: %1.</numerusform>
            <numerusform>%Ln نقاط مزج منها: %1.</numerusform>
            <numerusform>%Ln نقطة مزج منها: %1.</numerusform>
            <numerusform>%Ln نقطة مزج منها: %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>The song before fades out from %1 to %2.</source>
        <translation>تتلاشى الأغنية السابقة من %1 إلى %2.</translation>
    </message>
    <message>
        <source>Accents A, in percent for each half beat: %1.</source>
        <translation>النبر A، بالمئة لكل نصف نبضة: %1.</translation>
    </message>
    <message>
        <source>Accents B: %1.</source>
        <translation>النبر B: %1.</translation>
    </message>
    <message>
        <source>%1 %L2 kbit/s</source>
        <translation>%1 %L2 kbit/s</translation>
    </message>
</context>
<context>
    <name>StatusTexts</name>
    <message>
        <source>Reading “%1”</source>
        <translation>تجري قراءة «%1»</translation>
    </message>
    <message>
        <source>Analyzing “%1”</source>
        <translation>يجري تحليل «%1»</translation>
    </message>
    <message>
        <source>Stopping …</source>
        <translation>يجري الإيقاف …</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation>%1 من %2</translation>
    </message>
    <message numerus="yes">
        <source>Adding files … %Ln so far</source>
        <translation>
            <numerusform>تجري إضافة الملفات … لا شيء حتى الآن</numerusform>
            <numerusform>تجري إضافة الملفات … واحد حتى الآن</numerusform>
            <numerusform>تجري إضافة الملفات … اثنان حتى الآن</numerusform>
            <numerusform>تجري إضافة الملفات … %Ln حتى الآن</numerusform>
            <numerusform>تجري إضافة الملفات … %Ln حتى الآن</numerusform>
            <numerusform>تجري إضافة الملفات … %Ln حتى الآن</numerusform>
        </translation>
    </message>
    <message>
        <source>No files</source>
        <translation>لا ملفات</translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>لا ملفات</numerusform>
            <numerusform>ملف واحد</numerusform>
            <numerusform>ملفان</numerusform>
            <numerusform>%Ln ملفات</numerusform>
            <numerusform>%Ln ملفًا</numerusform>
            <numerusform>%Ln ملف</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln to do</source>
        <translation>
            <numerusform>لم يتبقَّ شيء</numerusform>
            <numerusform>واحد متبقٍّ</numerusform>
            <numerusform>اثنان متبقّيان</numerusform>
            <numerusform>%Ln متبقّية</numerusform>
            <numerusform>%Ln متبقّيًا</numerusform>
            <numerusform>%Ln متبقٍّ</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln problem(s)</source>
        <translation>
            <numerusform>لا مشكلات</numerusform>
            <numerusform>مشكلة واحدة</numerusform>
            <numerusform>مشكلتان</numerusform>
            <numerusform>%Ln مشكلات</numerusform>
            <numerusform>%Ln مشكلة</numerusform>
            <numerusform>%Ln مشكلة</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln already in the list</source>
        <translation>
            <numerusform>لا شيء منها في القائمة من قبل</numerusform>
            <numerusform>واحد في القائمة من قبل</numerusform>
            <numerusform>اثنان في القائمة من قبل</numerusform>
            <numerusform>%Ln في القائمة من قبل</numerusform>
            <numerusform>%Ln في القائمة من قبل</numerusform>
            <numerusform>%Ln في القائمة من قبل</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing added: %1.</source>
        <translation>لم يُضف شيء: %1.</translation>
    </message>
    <message numerus="yes">
        <source>%Ln added, %1.</source>
        <translation>
            <numerusform>لم يُضف شيء، %1.</numerusform>
            <numerusform>أُضيف ملف واحد، %1.</numerusform>
            <numerusform>أُضيف ملفان، %1.</numerusform>
            <numerusform>أُضيفت %Ln ملفات، %1.</numerusform>
            <numerusform>أُضيف %Ln ملفًا، %1.</numerusform>
            <numerusform>أُضيف %Ln ملف، %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing added: no music in “%1”.</source>
        <translation>لم يُضف شيء: لا موسيقى في «%1».</translation>
    </message>
    <message>
        <source>Nothing added: no music in these folders.</source>
        <translation>لم يُضف شيء: لا موسيقى في هذه المجلدات.</translation>
    </message>
    <message>
        <source>Nothing added: no music in “%1” (%2).</source>
        <translation>لم يُضف شيء: لا موسيقى في «%1» (%2).</translation>
    </message>
    <message>
        <source>Nothing added: no music in these folders (%1).</source>
        <translation>لم يُضف شيء: لا موسيقى في هذه المجلدات (%1).</translation>
    </message>
    <message numerus="yes">
        <source>Still working on %Ln file(s).</source>
        <translation>
            <numerusform>انتهى العمل على كل الملفات.</numerusform>
            <numerusform>لا يزال العمل جاريًا على ملف واحد.</numerusform>
            <numerusform>لا يزال العمل جاريًا على ملفين.</numerusform>
            <numerusform>لا يزال العمل جاريًا على %Ln ملفات.</numerusform>
            <numerusform>لا يزال العمل جاريًا على %Ln ملفًا.</numerusform>
            <numerusform>لا يزال العمل جاريًا على %Ln ملف.</numerusform>
        </translation>
    </message>
    <message>
        <source>The folder “%1” could not be read.</source>
        <translation>تعذّرت قراءة المجلد «%1».</translation>
    </message>
    <message numerus="yes">
        <source>%Ln folder(s) could not be read, the last of them “%1”.</source>
        <translation>
            <numerusform>لم تتعذّر قراءة أي مجلد، آخرها «%1».</numerusform>
            <numerusform>تعذّرت قراءة مجلد واحد هو «%1».</numerusform>
            <numerusform>تعذّرت قراءة مجلدين آخرهما «%1».</numerusform>
            <numerusform>تعذّرت قراءة %Ln مجلدات آخرها «%1».</numerusform>
            <numerusform>تعذّرت قراءة %Ln مجلدًا آخرها «%1».</numerusform>
            <numerusform>تعذّرت قراءة %Ln مجلد آخرها «%1».</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) hidden and left out. Nothing was deleted.</source>
        <translation>
            <numerusform>لم يُخفَ أي ملف. لم يُحذف شيء.</numerusform>
            <numerusform>أُخفي ملف واحد وتُرك خارج العمل. لم يُحذف شيء.</numerusform>
            <numerusform>أُخفي ملفان وتُركا خارج العمل. لم يُحذف شيء.</numerusform>
            <numerusform>أُخفيت %Ln ملفات وتُركت خارج العمل. لم يُحذف شيء.</numerusform>
            <numerusform>أُخفي %Ln ملفًا وتُركت خارج العمل. لم يُحذف شيء.</numerusform>
            <numerusform>أُخفي %Ln ملف وتُركت خارج العمل. لم يُحذف شيء.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) of other kinds were left out (%1).</source>
        <translation>
            <numerusform>لم يُترك أي ملف من نوع آخر (%1).</numerusform>
            <numerusform>تُرك ملف واحد من نوع آخر (%1).</numerusform>
            <numerusform>تُرك ملفان من أنواع أخرى (%1).</numerusform>
            <numerusform>تُركت %Ln ملفات من أنواع أخرى (%1).</numerusform>
            <numerusform>تُرك %Ln ملفًا من أنواع أخرى (%1).</numerusform>
            <numerusform>تُرك %Ln ملف من أنواع أخرى (%1).</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 ث</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 د %2 ث</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 س %2 د</translation>
    </message>
    <message numerus="yes">
        <source>%Ln analyzed in %1</source>
        <translation>
            <numerusform>لم يُحلَّل أي ملف في %1</numerusform>
            <numerusform>حُلِّل ملف واحد في %1</numerusform>
            <numerusform>حُلِّل ملفان في %1</numerusform>
            <numerusform>حُلِّلت %Ln ملفات في %1</numerusform>
            <numerusform>حُلِّل %Ln ملفًا في %1</numerusform>
            <numerusform>حُلِّل %Ln ملف في %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln stored</source>
        <translation>
            <numerusform>لم تُحفظ أي سرعة</numerusform>
            <numerusform>حُفظت سرعة واحدة</numerusform>
            <numerusform>حُفظت سرعتان</numerusform>
            <numerusform>حُفظت %Ln سرعات</numerusform>
            <numerusform>حُفظت %Ln سرعة</numerusform>
            <numerusform>حُفظت %Ln سرعة</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message>
        <source>it is a folder, not a file</source>
        <translation>هذا مجلد لا ملف</translation>
    </message>
    <message>
        <source>it is not a regular file</source>
        <translation>ليس ملفًا عاديًا</translation>
    </message>
    <message>
        <source>the file is empty</source>
        <translation>الملف فارغ</translation>
    </message>
    <message>
        <source>the file vanished while it was read</source>
        <translation>اختفى الملف أثناء قراءته</translation>
    </message>
    <message>
        <source>the file changed while it was read</source>
        <translation>تغيّر الملف أثناء قراءته</translation>
    </message>
    <message>
        <source>it is not an audio file that can be read</source>
        <translation>ليس ملفًا صوتيًا تمكن قراءته</translation>
    </message>
    <message>
        <source>files of its kind aren&apos;t read</source>
        <translation>لا تُقرأ ملفات هذا النوع</translation>
    </message>
    <message>
        <source>it is an MP3 of free format, which isn&apos;t read</source>
        <translation>هو ملف MP3 بالتنسيق الحر، وهذا التنسيق لا يُقرأ</translation>
    </message>
    <message>
        <source>the file is damaged or incomplete</source>
        <translation>الملف تالف أو ناقص</translation>
    </message>
    <message>
        <source>the file holds no audio</source>
        <translation>لا صوت في الملف</translation>
    </message>
    <message>
        <source>the file is protected</source>
        <translation>الملف محمي من النسخ</translation>
    </message>
    <message>
        <source>its kind of audio can&apos;t be decoded</source>
        <translation>يتعذّر فك ترميز هذا النوع من الصوت</translation>
    </message>
    <message>
        <source>its audio can&apos;t be decoded</source>
        <translation>يتعذّر فك ترميز الصوت</translation>
    </message>
    <message>
        <source>its audio can&apos;t be mixed down</source>
        <translation>يتعذّر دمج قنوات الصوت</translation>
    </message>
    <message>
        <source>its sample rate can&apos;t be worked with</source>
        <translation>معدل العينات غير صالح للعمل</translation>
    </message>
    <message>
        <source>the file is too long</source>
        <translation>الملف أطول من اللازم</translation>
    </message>
    <message>
        <source>there is not enough memory for it</source>
        <translation>الذاكرة لا تكفي له</translation>
    </message>
    <message>
        <source>the file gave no audio for too long</source>
        <translation>لم يُعطِ الملف صوتًا لوقت طويل</translation>
    </message>
    <message>
        <source>the analysis was stopped</source>
        <translation>أُوقف التحليل</translation>
    </message>
    <message>
        <source>no beat was found in it</source>
        <translation>لم يُعثر فيه على نبضات</translation>
    </message>
    <message>
        <source>no thread could be started</source>
        <translation>تعذّر بدء مسار تنفيذ</translation>
    </message>
    <message>
        <source>there is not enough memory for the analysis</source>
        <translation>الذاكرة لا تكفي للتحليل</translation>
    </message>
    <message>
        <source>the file is damaged, %1 of %2 packets can&apos;t be decoded</source>
        <translation>الملف تالف، ويتعذّر فك ترميز %1 من أصل %2 من الحزم</translation>
    </message>
    <message>
        <source>the file ends early, after %1 of %2 seconds</source>
        <translation>ينتهي الملف قبل أوانه، بعد %1 من أصل %2 من الثواني</translation>
    </message>
    <message>
        <source>the file breaks off in the middle of a frame</source>
        <translation>ينقطع الملف في وسط إطار</translation>
    </message>
    <message>
        <source>%1, and it ends early, after %2 of %3 seconds</source>
        <translation>%1، وينتهي قبل أوانه، بعد %2 من أصل %3 من الثواني</translation>
    </message>
    <message>
        <source>%1, and it breaks off</source>
        <translation>%1، وينقطع</translation>
    </message>
    <message>
        <source>only MP3 files are tagged</source>
        <translation>لا تُكتب الوسوم إلا في ملفات MP3</translation>
    </message>
    <message>
        <source>it is an MP4 file under an MP3&apos;s name</source>
        <translation>هو ملف MP4 باسم ملف MP3</translation>
    </message>
    <message>
        <source>the file cannot be written to</source>
        <translation>لا تمكن الكتابة في الملف</translation>
    </message>
    <message>
        <source>the file is too large</source>
        <translation>الملف أكبر من اللازم</translation>
    </message>
    <message>
        <source>its tag is damaged</source>
        <translation>وسمه تالف</translation>
    </message>
    <message>
        <source>its tag holds data that would be lost</source>
        <translation>في وسمه بيانات كانت ستضيع</translation>
    </message>
    <message>
        <source>its old tag holds frames that would be lost</source>
        <translation>في وسمه القديم حقول كانت ستضيع</translation>
    </message>
    <message>
        <source>its tag would become too large</source>
        <translation>سيصبح وسمه أكبر من اللازم</translation>
    </message>
    <message>
        <source>another program is writing to it</source>
        <translation>يكتب فيه برنامج آخر</translation>
    </message>
    <message>
        <source>the file has changed meanwhile</source>
        <translation>تغيّر الملف في هذه الأثناء</translation>
    </message>
    <message>
        <source>no file can be made in its folder</source>
        <translation>لا يمكن إنشاء ملف في مجلده</translation>
    </message>
    <message>
        <source>it is in a form whose tag can&apos;t be written</source>
        <translation>بنيته لا تسمح بكتابة وسمه</translation>
    </message>
    <message>
        <source>something else would have changed with it</source>
        <translation>كان شيء آخر سيتغيّر معه</translation>
    </message>
    <message>
        <source>the disk is full</source>
        <translation>القرص ممتلئ</translation>
    </message>
    <message>
        <source>its name is a link to a file of another kind</source>
        <translation>اسمه رابط إلى ملف من نوع آخر</translation>
    </message>
    <message>
        <source>it is not MPEG audio</source>
        <translation>ليس صوتًا بترميز MPEG</translation>
    </message>
    <message>
        <source>too much of it is damaged</source>
        <translation>الجزء التالف منه كبير</translation>
    </message>
    <message>
        <source>it ends early</source>
        <translation>ينتهي قبل أوانه</translation>
    </message>
    <message>
        <source>it would pass the limit on file sizes</source>
        <translation>سيتجاوز الحد المسموح لأحجام الملفات</translation>
    </message>
    <message>
        <source>Its tag is of version 2.3 now, and some frames got other names: %1</source>
        <translation>صار وسمه من الإصدار 2.3، وتغيّرت أسماء بعض الحقول: %1</translation>
    </message>
    <message>
        <source>its tag holds compressed, encrypted or grouped frames</source>
        <translation>في وسمه حقول مضغوطة أو مشفّرة أو مجمّعة</translation>
    </message>
    <message>
        <source>its tag has got another tempo meanwhile</source>
        <translation>تغيّرت السرعة في وسمه في هذه الأثناء</translation>
    </message>
    <message>
        <source>it may not be replaced in its folder</source>
        <translation>لا يُسمح باستبداله في مجلده</translation>
    </message>
    <message>
        <source>there is not enough memory</source>
        <translation>الذاكرة لا تكفي</translation>
    </message>
    <message>
        <source>writing to the disk failed</source>
        <translation>فشلت الكتابة على القرص</translation>
    </message>
    <message>
        <source>Tempo not stored: %1</source>
        <translation>لم تُحفظ السرعة: %1</translation>
    </message>
    <message>
        <source>No tempo: %1</source>
        <translation>لا سرعة: %1</translation>
    </message>
    <message>
        <source>Analyzed in part: %1</source>
        <translation>حُلِّل جزئيًا: %1</translation>
    </message>
    <message>
        <source>the file is gone</source>
        <translation>لم يعد الملف موجودًا</translation>
    </message>
    <message>
        <source>, </source>
        <comment>between parts of a sentence</comment>
        <translation>، </translation>
    </message>
    <message>
        <source>; </source>
        <comment>between parts of a sentence</comment>
        <translation>؛ </translation>
    </message>
</context>
</TS>
