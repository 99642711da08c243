<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>CommandLine</name>
    <message>
        <source>A virtual MIDI keyboard: play on the computer keys, on the screen&apos;s piano and on a MIDI keyboard.</source>
        <translation>Виртуальная MIDI-клавиатура: играйте на клавишах компьютера, на фортепиано на экране и на MIDI-клавиатуре.</translation>
    </message>
    <message>
        <source>Play a short demonstration, leave a screenshot, a MIDI file and a sound file in &lt;folder&gt;, and quit.</source>
        <translation>Сыграть короткую демонстрацию, оставить в &lt;папке&gt; снимок экрана, MIDI-файл и звуковой файл и завершить работу.</translation>
    </message>
    <message>
        <source>Take the interface language of &lt;locale&gt;, such as ru_RU, for this run.</source>
        <translation>Взять на этот запуск язык интерфейса &lt;локали&gt;, например ru_RU.</translation>
    </message>
    <message>
        <source>locale</source>
        <translation>локаль</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>папка</translation>
    </message>
    <message>
        <source>Leave pictures for the manual in &lt;folder&gt; and quit.</source>
        <translation>Оставить в &lt;папке&gt; изображения для руководства и завершить работу.</translation>
    </message>
    <message>
        <source>The sound font &quot;%1&quot; cannot be played: %2</source>
        <translation>Банк звуков «%1» сыграть нельзя: %2</translation>
    </message>
    <message>
        <source>The value of --%1 is empty.</source>
        <translation>Значение --%1 пусто.</translation>
    </message>
    <message>
        <source>--render needs the name of the file to write.</source>
        <translation>Для --render нужно имя файла, который надо записать.</translation>
    </message>
    <message>
        <source>There is no language &quot;%1&quot; here.</source>
        <translation>Языка «%1» здесь нет.</translation>
    </message>
    <message>
        <source>No display is found that the instrument&apos;s window could be on: neither DISPLAY nor WAYLAND_DISPLAY is set.</source>
        <translation>Не найден экран для окна инструмента: не заданы ни DISPLAY, ни WAYLAND_DISPLAY.</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is one argument too many.</source>
        <translation>Аргумент «%1» лишний.</translation>
    </message>
    <message>
        <source>--%1 and --%2 do not go together.</source>
        <translation>--%1 и --%2 нельзя указать вместе.</translation>
    </message>
    <message>
        <source>The file to write, &quot;%1&quot;, ends neither in .wav nor in .mid.</source>
        <translation>Имя файла, который надо записать, «%1», не кончается ни на .wav, ни на .mid.</translation>
    </message>
    <message>
        <source>Play to the MIDI output &lt;name&gt; in this run.</source>
        <translation>Играть в этот запуск на MIDI-выход &lt;имя&gt;.</translation>
    </message>
    <message>
        <source>name</source>
        <translation>имя</translation>
    </message>
    <message>
        <source>Listen to the MIDI input &lt;name&gt; in this run.</source>
        <translation>Слушать в этот запуск MIDI-вход &lt;имя&gt;.</translation>
    </message>
    <message>
        <source>Begin with a preset: its name or its file.</source>
        <translation>Начать с пресета: его имя или его файл.</translation>
    </message>
    <message>
        <source>preset</source>
        <translation>пресет</translation>
    </message>
    <message>
        <source>Play the sound font &lt;file&gt; in this run.</source>
        <translation>Играть в этот запуск банком звуков &lt;файл&gt;.</translation>
    </message>
    <message>
        <source>file</source>
        <translation>файл</translation>
    </message>
    <message>
        <source>List the MIDI outputs and inputs, a line each, and quit.</source>
        <translation>Вывести MIDI-выходы и MIDI-входы, по одному в строке, и завершить работу.</translation>
    </message>
    <message>
        <source>Output: %1</source>
        <translation>Выход: %1</translation>
    </message>
    <message>
        <source>Input: %1</source>
        <translation>Вход: %1</translation>
    </message>
    <message>
        <source>kivora --help lists the options.</source>
        <translation>Параметры перечисляет kivora --help.</translation>
    </message>
    <message>
        <source>There is no preset &quot;%1&quot;.</source>
        <translation>Нет пресета «%1».</translation>
    </message>
    <message>
        <source>%1 is no preset.</source>
        <translation>%1 — не пресет.</translation>
    </message>
    <message>
        <source>The preset %1 cannot be read</source>
        <translation>Пресет %1 прочитать нельзя</translation>
    </message>
    <message>
        <source>The piece is longer than six hours.</source>
        <translation>Пьеса длиннее шести часов.</translation>
    </message>
    <message>
        <source>No sound font is found; --sound-font names one.</source>
        <translation>Банк звуков не найден; его можно указать с помощью --sound-font.</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1 записать нельзя</translation>
    </message>
    <message>
        <source>The file to write is the one to play.</source>
        <translation>Файл, который надо записать, — тот же, который надо сыграть.</translation>
    </message>
    <message>
        <source>%1 cannot be read</source>
        <translation>%1 прочитать нельзя</translation>
    </message>
    <message>
        <source>kivora --list-ports lists those that are there.</source>
        <translation>Имеющиеся перечисляет kivora --list-ports.</translation>
    </message>
    <message>
        <source>There is no MIDI output &quot;%1&quot;.</source>
        <translation>Нет MIDI-выхода «%1».</translation>
    </message>
    <message>
        <source>There is no MIDI input &quot;%1&quot;.</source>
        <translation>Нет MIDI-входа «%1».</translation>
    </message>
    <message>
        <source>Say what would sound, what would not and what to do about it, with a test note, and quit. The exit code is 0 when a key would sound.</source>
        <translation>Сказать, что зазвучит, что нет и что с этим делать, сыграв пробную ноту, и завершить работу. Код завершения — 0, если клавиша зазвучит.</translation>
    </message>
    <message>
        <source>Play the MIDI file &lt;file&gt; as if a MIDI keyboard sent it, write what comes out to the file named after it, and quit. Needs no window, no display and no sound card.</source>
        <translation>Сыграть MIDI-&lt;файл&gt;, как если бы его передала MIDI-клавиатура, записать то, что получится, в файл, указанный за ним, и завершить работу. Не нужны ни окно, ни экран, ни звуковая карта.</translation>
    </message>
    <message>
        <source>Open the file in a program of its own, though one runs already.</source>
        <translation>Открыть файл в отдельной программе, хотя одна уже запущена.</translation>
    </message>
    <message>
        <source>%1 cannot be opened, as the instrument could not be started.</source>
        <translation>%1 открыть нельзя: не удалось запустить инструмент.</translation>
    </message>
    <message>
        <source>The file of a preset, or a MIDI file to be played; a program that runs already takes it. With --render: the sound file (.wav) or MIDI file (.mid) to write.</source>
        <translation>Файл пресета или MIDI-файл, который надо открыть; если программа уже запущена, его открывает она. С --render: звуковой файл (.wav) или MIDI-файл (.mid), который надо записать.</translation>
    </message>
</context>
<context>
    <name>Dialogs</name>
    <message>
        <source>What was changed is kept in this file until then:</source>
        <translation>До тех пор изменения хранятся в файле:</translation>
    </message>
</context>
<context>
    <name>Files</name>
    <message>
        <source>Operation not permitted</source>
        <translation>Операция не разрешена</translation>
    </message>
    <message>
        <source>No such file or directory</source>
        <translation>Нет такого файла или папки</translation>
    </message>
    <message>
        <source>Input/output error</source>
        <translation>Ошибка ввода-вывода</translation>
    </message>
    <message>
        <source>Permission denied</source>
        <translation>Нет прав доступа</translation>
    </message>
    <message>
        <source>File exists</source>
        <translation>Файл уже существует</translation>
    </message>
    <message>
        <source>Not a directory</source>
        <translation>Это не папка</translation>
    </message>
    <message>
        <source>Is a directory</source>
        <translation>Это папка</translation>
    </message>
    <message>
        <source>Too many open files in system</source>
        <translation>В системе открыто слишком много файлов</translation>
    </message>
    <message>
        <source>Too many open files</source>
        <translation>Открыто слишком много файлов</translation>
    </message>
    <message>
        <source>Text file busy</source>
        <translation>Файл занят: эта программа выполняется</translation>
    </message>
    <message>
        <source>File too large</source>
        <translation>Файл слишком велик</translation>
    </message>
    <message>
        <source>No space left on device</source>
        <translation>На диске не осталось места</translation>
    </message>
    <message>
        <source>Read-only file system</source>
        <translation>Диск доступен только для чтения</translation>
    </message>
    <message>
        <source>File name too long</source>
        <translation>Слишком длинное имя файла</translation>
    </message>
    <message>
        <source>Too many levels of symbolic links</source>
        <translation>Слишком длинная цепочка ссылок</translation>
    </message>
    <message>
        <source>Stale file handle</source>
        <translation>Файл на сервере больше не доступен</translation>
    </message>
    <message>
        <source>Disk quota exceeded</source>
        <translation>Превышена дисковая квота</translation>
    </message>
    <message>
        <source>Device or resource busy</source>
        <translation>Устройство занято</translation>
    </message>
    <message>
        <source>Transport endpoint is not connected</source>
        <translation>Нет соединения с диском</translation>
    </message>
    <message>
        <source>Host is down</source>
        <translation>Сервер не отвечает</translation>
    </message>
    <message>
        <source>It is no regular file</source>
        <translation>Это не обычный файл</translation>
    </message>
    <message>
        <source>It is too large</source>
        <translation>Он слишком велик</translation>
    </message>
</context>
<context>
    <name>GM</name>
    <message>
        <source>Acoustic Grand Piano</source>
        <translation>Акустический рояль</translation>
    </message>
    <message>
        <source>Bright Acoustic Piano</source>
        <translation>Яркий рояль</translation>
    </message>
    <message>
        <source>Electric Grand Piano</source>
        <translation>Электророяль</translation>
    </message>
    <message>
        <source>Honky-tonk Piano</source>
        <translation>Расстроенное пианино</translation>
    </message>
    <message>
        <source>Rhodes Piano</source>
        <translation>Электропиано Rhodes</translation>
    </message>
    <message>
        <source>Chorused Piano</source>
        <translation>Электропиано с хорусом</translation>
    </message>
    <message>
        <source>Harpsichord</source>
        <translation>Клавесин</translation>
    </message>
    <message>
        <source>Clavinet</source>
        <translation>Клавинет</translation>
    </message>
    <message>
        <source>Celesta</source>
        <translation>Челеста</translation>
    </message>
    <message>
        <source>Glockenspiel</source>
        <translation>Колокольчики</translation>
    </message>
    <message>
        <source>Music Box</source>
        <translation>Музыкальная шкатулка</translation>
    </message>
    <message>
        <source>Vibraphone</source>
        <translation>Вибрафон</translation>
    </message>
    <message>
        <source>Marimba</source>
        <translation>Маримба</translation>
    </message>
    <message>
        <source>Xylophone</source>
        <translation>Ксилофон</translation>
    </message>
    <message>
        <source>Tubular Bells</source>
        <translation>Трубчатые колокола</translation>
    </message>
    <message>
        <source>Dulcimer</source>
        <translation>Цимбалы</translation>
    </message>
    <message>
        <source>Hammond Organ</source>
        <translation>Орган Hammond</translation>
    </message>
    <message>
        <source>Percussive Organ</source>
        <translation>Перкуссионный орган</translation>
    </message>
    <message>
        <source>Rock Organ</source>
        <translation>Рок-орган</translation>
    </message>
    <message>
        <source>Church Organ</source>
        <translation>Церковный орган</translation>
    </message>
    <message>
        <source>Reed Organ</source>
        <translation>Фисгармония</translation>
    </message>
    <message>
        <source>Accordion</source>
        <translation>Аккордеон</translation>
    </message>
    <message>
        <source>Harmonica</source>
        <translation>Губная гармоника</translation>
    </message>
    <message>
        <source>Tango Accordion</source>
        <translation>Бандонеон</translation>
    </message>
    <message>
        <source>Acoustic Guitar (nylon)</source>
        <translation>Акустическая гитара (нейлон)</translation>
    </message>
    <message>
        <source>Acoustic Guitar (steel)</source>
        <translation>Акустическая гитара (сталь)</translation>
    </message>
    <message>
        <source>Electric Guitar (jazz)</source>
        <translation>Электрогитара (джазовая)</translation>
    </message>
    <message>
        <source>Electric Guitar (clean)</source>
        <translation>Электрогитара (чистая)</translation>
    </message>
    <message>
        <source>Electric Guitar (muted)</source>
        <translation>Электрогитара (приглушённая)</translation>
    </message>
    <message>
        <source>Overdriven Guitar</source>
        <translation>Гитара с овердрайвом</translation>
    </message>
    <message>
        <source>Distortion Guitar</source>
        <translation>Гитара с дисторшном</translation>
    </message>
    <message>
        <source>Guitar Harmonics</source>
        <translation>Гитарные флажолеты</translation>
    </message>
    <message>
        <source>Acoustic Bass</source>
        <translation>Акустический бас</translation>
    </message>
    <message>
        <source>Electric Bass (finger)</source>
        <translation>Бас-гитара (пальцами)</translation>
    </message>
    <message>
        <source>Electric Bass (pick)</source>
        <translation>Бас-гитара (медиатором)</translation>
    </message>
    <message>
        <source>Fretless Bass</source>
        <translation>Безладовый бас</translation>
    </message>
    <message>
        <source>Slap Bass 1</source>
        <translation>Слэп-бас 1</translation>
    </message>
    <message>
        <source>Slap Bass 2</source>
        <translation>Слэп-бас 2</translation>
    </message>
    <message>
        <source>Synth Bass 1</source>
        <translation>Синтезаторный бас 1</translation>
    </message>
    <message>
        <source>Synth Bass 2</source>
        <translation>Синтезаторный бас 2</translation>
    </message>
    <message>
        <source>Violin</source>
        <translation>Скрипка</translation>
    </message>
    <message>
        <source>Viola</source>
        <translation>Альт</translation>
    </message>
    <message>
        <source>Cello</source>
        <translation>Виолончель</translation>
    </message>
    <message>
        <source>Contrabass</source>
        <translation>Контрабас</translation>
    </message>
    <message>
        <source>Tremolo Strings</source>
        <translation>Струнные тремоло</translation>
    </message>
    <message>
        <source>Pizzicato Strings</source>
        <translation>Струнные пиццикато</translation>
    </message>
    <message>
        <source>Orchestral Harp</source>
        <translation>Оркестровая арфа</translation>
    </message>
    <message>
        <source>Timpani</source>
        <translation>Литавры</translation>
    </message>
    <message>
        <source>String Ensemble 1</source>
        <translation>Струнный ансамбль 1</translation>
    </message>
    <message>
        <source>String Ensemble 2</source>
        <translation>Струнный ансамбль 2</translation>
    </message>
    <message>
        <source>SynthStrings 1</source>
        <translation>Синтезаторные струнные 1</translation>
    </message>
    <message>
        <source>SynthStrings 2</source>
        <translation>Синтезаторные струнные 2</translation>
    </message>
    <message>
        <source>Choir Aahs</source>
        <translation>Хор «а-а»</translation>
    </message>
    <message>
        <source>Voice Oohs</source>
        <translation>Голоса «о-о»</translation>
    </message>
    <message>
        <source>Synth Voice</source>
        <translation>Синтезаторный голос</translation>
    </message>
    <message>
        <source>Orchestra Hit</source>
        <translation>Оркестровый удар</translation>
    </message>
    <message>
        <source>Trumpet</source>
        <translation>Труба</translation>
    </message>
    <message>
        <source>Trombone</source>
        <translation>Тромбон</translation>
    </message>
    <message>
        <source>Tuba</source>
        <translation>Туба</translation>
    </message>
    <message>
        <source>Muted Trumpet</source>
        <translation>Труба с сурдиной</translation>
    </message>
    <message>
        <source>French Horn</source>
        <translation>Валторна</translation>
    </message>
    <message>
        <source>Brass Section</source>
        <translation>Группа медных</translation>
    </message>
    <message>
        <source>Synth Brass 1</source>
        <translation>Синтезаторные медные 1</translation>
    </message>
    <message>
        <source>Synth Brass 2</source>
        <translation>Синтезаторные медные 2</translation>
    </message>
    <message>
        <source>Soprano Sax</source>
        <translation>Сопрано-саксофон</translation>
    </message>
    <message>
        <source>Alto Sax</source>
        <translation>Альт-саксофон</translation>
    </message>
    <message>
        <source>Tenor Sax</source>
        <translation>Тенор-саксофон</translation>
    </message>
    <message>
        <source>Baritone Sax</source>
        <translation>Баритон-саксофон</translation>
    </message>
    <message>
        <source>Oboe</source>
        <translation>Гобой</translation>
    </message>
    <message>
        <source>English Horn</source>
        <translation>Английский рожок</translation>
    </message>
    <message>
        <source>Bassoon</source>
        <translation>Фагот</translation>
    </message>
    <message>
        <source>Clarinet</source>
        <translation>Кларнет</translation>
    </message>
    <message>
        <source>Piccolo</source>
        <translation>Флейта-пикколо</translation>
    </message>
    <message>
        <source>Flute</source>
        <translation>Флейта</translation>
    </message>
    <message>
        <source>Recorder</source>
        <translation>Блокфлейта</translation>
    </message>
    <message>
        <source>Pan Flute</source>
        <translation>Флейта Пана</translation>
    </message>
    <message>
        <source>Bottle Blow</source>
        <translation>Звук бутылки</translation>
    </message>
    <message>
        <source>Shakuhachi</source>
        <translation>Сякухати</translation>
    </message>
    <message>
        <source>Whistle</source>
        <translation>Свист</translation>
    </message>
    <message>
        <source>Ocarina</source>
        <translation>Окарина</translation>
    </message>
    <message>
        <source>Lead 1 (square)</source>
        <translation>Лид 1 (меандр)</translation>
    </message>
    <message>
        <source>Lead 2 (sawtooth)</source>
        <translation>Лид 2 (пила)</translation>
    </message>
    <message>
        <source>Lead 3 (calliope lead)</source>
        <translation>Лид 3 (каллиопа)</translation>
    </message>
    <message>
        <source>Lead 4 (chiff lead)</source>
        <translation>Лид 4 (с придыханием)</translation>
    </message>
    <message>
        <source>Lead 5 (charang)</source>
        <translation>Лид 5 (чаранго)</translation>
    </message>
    <message>
        <source>Lead 6 (voice)</source>
        <translation>Лид 6 (голос)</translation>
    </message>
    <message>
        <source>Lead 7 (fifths)</source>
        <translation>Лид 7 (квинты)</translation>
    </message>
    <message>
        <source>Lead 8 (bass + lead)</source>
        <translation>Лид 8 (бас и лид)</translation>
    </message>
    <message>
        <source>Pad 1 (new age)</source>
        <translation>Пэд 1 (нью-эйдж)</translation>
    </message>
    <message>
        <source>Pad 2 (warm)</source>
        <translation>Пэд 2 (тёплый)</translation>
    </message>
    <message>
        <source>Pad 3 (polysynth)</source>
        <translation>Пэд 3 (полисинт)</translation>
    </message>
    <message>
        <source>Pad 4 (choir)</source>
        <translation>Пэд 4 (хор)</translation>
    </message>
    <message>
        <source>Pad 5 (bowed)</source>
        <translation>Пэд 5 (смычковый)</translation>
    </message>
    <message>
        <source>Pad 6 (metallic)</source>
        <translation>Пэд 6 (металлический)</translation>
    </message>
    <message>
        <source>Pad 7 (halo)</source>
        <translation>Пэд 7 (ореол)</translation>
    </message>
    <message>
        <source>Pad 8 (sweep)</source>
        <translation>Пэд 8 (свип)</translation>
    </message>
    <message>
        <source>FX 1 (rain)</source>
        <translation>Эффект 1 (дождь)</translation>
    </message>
    <message>
        <source>FX 2 (soundtrack)</source>
        <translation>Эффект 2 (саундтрек)</translation>
    </message>
    <message>
        <source>FX 3 (crystal)</source>
        <translation>Эффект 3 (кристалл)</translation>
    </message>
    <message>
        <source>FX 4 (atmosphere)</source>
        <translation>Эффект 4 (атмосфера)</translation>
    </message>
    <message>
        <source>FX 5 (brightness)</source>
        <translation>Эффект 5 (яркость)</translation>
    </message>
    <message>
        <source>FX 6 (goblins)</source>
        <translation>Эффект 6 (гоблины)</translation>
    </message>
    <message>
        <source>FX 7 (echoes)</source>
        <translation>Эффект 7 (эхо)</translation>
    </message>
    <message>
        <source>FX 8 (sci-fi)</source>
        <translation>Эффект 8 (фантастика)</translation>
    </message>
    <message>
        <source>Sitar</source>
        <translation>Ситар</translation>
    </message>
    <message>
        <source>Banjo</source>
        <translation>Банджо</translation>
    </message>
    <message>
        <source>Shamisen</source>
        <translation>Сямисэн</translation>
    </message>
    <message>
        <source>Koto</source>
        <translation>Кото</translation>
    </message>
    <message>
        <source>Kalimba</source>
        <translation>Калимба</translation>
    </message>
    <message>
        <source>Bagpipe</source>
        <translation>Волынка</translation>
    </message>
    <message>
        <source>Fiddle</source>
        <translation>Народная скрипка</translation>
    </message>
    <message>
        <source>Shanai</source>
        <translation>Шахнай</translation>
    </message>
    <message>
        <source>Tinkle Bell</source>
        <translation>Колокольчик</translation>
    </message>
    <message>
        <source>Agogo</source>
        <translation>Агого</translation>
    </message>
    <message>
        <source>Steel Drums</source>
        <translation>Стальные барабаны</translation>
    </message>
    <message>
        <source>Woodblock</source>
        <translation>Деревянная коробочка</translation>
    </message>
    <message>
        <source>Taiko Drum</source>
        <translation>Барабан тайко</translation>
    </message>
    <message>
        <source>Melodic Tom</source>
        <translation>Мелодический том</translation>
    </message>
    <message>
        <source>Synth Drum</source>
        <translation>Синтезаторный барабан</translation>
    </message>
    <message>
        <source>Reverse Cymbal</source>
        <translation>Обратная тарелка</translation>
    </message>
    <message>
        <source>Guitar Fret Noise</source>
        <translation>Шум гитарных ладов</translation>
    </message>
    <message>
        <source>Breath Noise</source>
        <translation>Шум дыхания</translation>
    </message>
    <message>
        <source>Seashore</source>
        <translation>Шум прибоя</translation>
    </message>
    <message>
        <source>Bird Tweet</source>
        <translation>Щебет птиц</translation>
    </message>
    <message>
        <source>Telephone Ring</source>
        <translation>Телефонный звонок</translation>
    </message>
    <message>
        <source>Helicopter</source>
        <translation>Вертолёт</translation>
    </message>
    <message>
        <source>Applause</source>
        <translation>Аплодисменты</translation>
    </message>
    <message>
        <source>Gunshot</source>
        <translation>Выстрел</translation>
    </message>
    <message>
        <source>Standard Drum Kit</source>
        <translation>Стандартная ударная установка</translation>
    </message>
</context>
<context>
    <name>GM family</name>
    <message>
        <source>Piano</source>
        <translation>Фортепиано</translation>
    </message>
    <message>
        <source>Chromatic Percussion</source>
        <translation>Мелодическая перкуссия</translation>
    </message>
    <message>
        <source>Organ</source>
        <translation>Органы</translation>
    </message>
    <message>
        <source>Guitar</source>
        <translation>Гитары</translation>
    </message>
    <message>
        <source>Bass</source>
        <translation>Басы</translation>
    </message>
    <message>
        <source>Strings</source>
        <translation>Струнные</translation>
    </message>
    <message>
        <source>Ensemble</source>
        <translation>Ансамбли</translation>
    </message>
    <message>
        <source>Brass</source>
        <translation>Медные духовые</translation>
    </message>
    <message>
        <source>Reed</source>
        <translation>Язычковые духовые</translation>
    </message>
    <message>
        <source>Pipe</source>
        <translation>Флейты</translation>
    </message>
    <message>
        <source>Synth Lead</source>
        <translation>Синтезаторные лиды</translation>
    </message>
    <message>
        <source>Synth Pad</source>
        <translation>Синтезаторные пэды</translation>
    </message>
    <message>
        <source>Synth Effects</source>
        <translation>Синтезаторные эффекты</translation>
    </message>
    <message>
        <source>Ethnic</source>
        <translation>Этнические</translation>
    </message>
    <message>
        <source>Percussive</source>
        <translation>Ударные</translation>
    </message>
    <message>
        <source>Sound Effects</source>
        <translation>Звуковые эффекты</translation>
    </message>
    <message>
        <source>Percussions</source>
        <translation>Перкуссия</translation>
    </message>
</context>
<context>
    <name>HelpPages</name>
    <message>
        <source>Help Not Found</source>
        <translation>Справка не найдена</translation>
    </message>
    <message>
        <source>Sorry, the help file is not available:</source>
        <translation>К сожалению, файл справки недоступен:</translation>
    </message>
    <message>
        <source>Cannot Launch Help</source>
        <translation>Не удаётся открыть справку</translation>
    </message>
    <message>
        <source>Sorry, failed to open the help file:</source>
        <translation>К сожалению, не удалось открыть файл справки:</translation>
    </message>
</context>
<context>
    <name>Keyboard map</name>
    <message>
        <source>A</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ф</translation>
    </message>
    <message>
        <source>B</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>И</translation>
    </message>
    <message>
        <source>C</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>С</translation>
    </message>
    <message>
        <source>D</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>В</translation>
    </message>
    <message>
        <source>E</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>У</translation>
    </message>
    <message>
        <source>F</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>А</translation>
    </message>
    <message>
        <source>G</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>П</translation>
    </message>
    <message>
        <source>H</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Р</translation>
    </message>
    <message>
        <source>I</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ш</translation>
    </message>
    <message>
        <source>J</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>О</translation>
    </message>
    <message>
        <source>K</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Л</translation>
    </message>
    <message>
        <source>L</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Д</translation>
    </message>
    <message>
        <source>M</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ь</translation>
    </message>
    <message>
        <source>N</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Т</translation>
    </message>
    <message>
        <source>O</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Щ</translation>
    </message>
    <message>
        <source>P</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>З</translation>
    </message>
    <message>
        <source>Q</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Й</translation>
    </message>
    <message>
        <source>R</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>К</translation>
    </message>
    <message>
        <source>S</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ы</translation>
    </message>
    <message>
        <source>T</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Е</translation>
    </message>
    <message>
        <source>U</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Г</translation>
    </message>
    <message>
        <source>V</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>М</translation>
    </message>
    <message>
        <source>W</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ц</translation>
    </message>
    <message>
        <source>X</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ч</translation>
    </message>
    <message>
        <source>Y</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Н</translation>
    </message>
    <message>
        <source>Z</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Я</translation>
    </message>
    <message>
        <source>&apos;</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Э</translation>
    </message>
    <message>
        <source>,</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Б</translation>
    </message>
    <message>
        <source>.</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ю</translation>
    </message>
    <message>
        <source>/</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>.</translation>
    </message>
    <message>
        <source>:</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ж</translation>
    </message>
    <message>
        <source>[</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Х</translation>
    </message>
    <message>
        <source>\</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>\</translation>
    </message>
    <message>
        <source>]</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ъ</translation>
    </message>
    <message>
        <source>`</source>
        <comment>Letter on the same key on localized keyboard</comment>
        <translation>Ё</translation>
    </message>
</context>
<context>
    <name>KeyboardTest</name>
    <message>
        <source>Test My Keyboard</source>
        <translation>Проверка клавиатуры</translation>
    </message>
    <message>
        <source>Press keys together: each one that your keyboard reports lights up.</source>
        <translation>Нажимайте несколько клавиш сразу: каждая, о которой клавиатура сообщает, загорается.</translation>
    </message>
    <message>
        <source>One stays dark</source>
        <translation>Одна не горит</translation>
    </message>
    <message>
        <source>Start again</source>
        <translation>Начать заново</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Keys of the computer&apos;s keyboard</source>
        <translation>Клавиши клавиатуры компьютера</translation>
    </message>
    <message>
        <source>All chords have been tried.</source>
        <translation>Все аккорды проверены.</translation>
    </message>
    <message>
        <source>Chord %1 of %2: hold %3, then let go.</source>
        <translation>Аккорд %1 из %2: удерживайте %3, затем отпустите.</translation>
    </message>
    <message>
        <source>If the third key stays dark, let go of another one first, or press the button.</source>
        <translation>Если третья клавиша не загорелась, сначала отпустите одну из других или нажмите кнопку.</translation>
    </message>
    <message>
        <source>Your keyboard reports every chord that was asked for.</source>
        <translation>Клавиатура сообщает обо всех проверенных аккордах.</translation>
    </message>
    <message>
        <source>%1 (without %2)</source>
        <comment>a chord, and the key that is missing</comment>
        <translation>%1 (нет %2)</translation>
    </message>
    <message>
        <source>Your keyboard cannot report: %1.</source>
        <translation>Клавиатура не может сообщить об аккордах: %1.</translation>
    </message>
    <message>
        <source>That is the wiring of the keyboard, which no program can change. A keyboard with “n-key rollover” reports every chord.</source>
        <translation>Так устроена разводка клавиатуры, и ни одна программа этого не изменит. Клавиатура с «n-key rollover» сообщает о любом аккорде.</translation>
    </message>
    <message>
        <source>Keys at once: %1. Most so far: %2.</source>
        <translation>Клавиш сразу: %1. Больше всего: %2.</translation>
    </message>
</context>
<context>
    <name>Kivora::CKivora</name>
    <message>
        <source>MIDI engine initalization failed (PortMIDI interface couldn&apos;t be created).</source>
        <translation>Сбой запуска MIDI (не удалось создать интерфейс PortMIDI).</translation>
    </message>
    <message>
        <source>MIDI engine initalization failed (error listing MIDI ports).</source>
        <translation>Сбой запуска MIDI (не удалось получить список портов MIDI).</translation>
    </message>
    <message>
        <source>No MIDI ports found.</source>
        <translation>Порты MIDI не найдены.</translation>
    </message>
    <message>
        <source>MIDI engine initalization failed (error creating MIDI player).</source>
        <translation>Сбой запуска MIDI (не удалось создать проигрыватель MIDI).</translation>
    </message>
    <message>
        <source>MIDI engine initalization failed (NULL port address).</source>
        <translation>Сбой запуска MIDI (нулевой адрес порта).</translation>
    </message>
    <message>
        <source>Attempt to set a NULL port as out.</source>
        <translation>Попытка назначить выходом нулевой порт.</translation>
    </message>
    <message>
        <source>Failed to open output MIDI port.</source>
        <translation>Не удалось открыть выходной порт MIDI.</translation>
    </message>
    <message>
        <source>Failed to start MIDI player.</source>
        <translation>Не удалось запустить проигрыватель MIDI.</translation>
    </message>
    <message>
        <source>NULL input port.</source>
        <translation>Нулевой входной порт.</translation>
    </message>
    <message>
        <source>Failed to open input MIDI port:</source>
        <translation>Не удалось открыть входной порт MIDI:</translation>
    </message>
    <message>
        <source>Microsoft Synthesizer</source>
        <comment>System software synthesizer name for the locale</comment>
        <translation>Программный синтезатор</translation>
    </message>
    <message>
        <source>No default output MIDI port found.</source>
        <translation>Выходной порт MIDI по умолчанию не найден.</translation>
    </message>
</context>
<context>
    <name>Kivora::MainWindow</name>
    <message>
        <source>Fatal Error</source>
        <translation>Неустранимая ошибка</translation>
    </message>
    <message>
        <source>Sorry, the application cannot continue.</source>
        <translation>К сожалению, программа не может продолжать работу.</translation>
    </message>
    <message>
        <source>Failed to create MIDI engine (unknown exception).</source>
        <translation>Не удалось запустить MIDI (неизвестное исключение).</translation>
    </message>
    <message>
        <source>Engine creation failed.</source>
        <translation>Не удалось создать движок.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Failed to save the settings.</source>
        <translation>Не удалось сохранить настройки.</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
    <message>
        <source>The file that remembers the language is damaged. The system&apos;s language is in force. The file was kept under another name.</source>
        <translation>Файл, в котором хранится язык, повреждён. Выбран язык системы. Файл сохранён под другим именем.</translation>
    </message>
    <message>
        <source>The file that remembers the language cannot be read at present. The system&apos;s language is in force, and the file is left as it is.</source>
        <translation>Файл, в котором хранится язык, сейчас не читается. Выбран язык системы, а файл оставлен как есть.</translation>
    </message>
    <message>
        <source>Cannot Open File</source>
        <translation>Не удалось открыть файл</translation>
    </message>
</context>
<context>
    <name>Kivora::TakeJournal</name>
    <message>
        <source>The recording goes on, but it cannot be kept safe on the disk meanwhile.</source>
        <translation>Запись продолжается, но пока не сохраняется на диске от сбоя.</translation>
    </message>
</context>
<context>
    <name>KivoraWidget</name>
    <message>
        <source>MIDI Engine Error</source>
        <translation>Ошибка MIDI</translation>
    </message>
    <message>
        <source>An unknown exception occured.</source>
        <translation>Возникло неизвестное исключение.</translation>
    </message>
    <message>
        <source>Error: pointer to the engine is NULL</source>
        <translation>Ошибка: указатель на движок равен NULL</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
    <message>
        <source>The settings file is damaged. The default settings are in force; the file will be kept under another name.</source>
        <translation>Файл настроек повреждён. Действуют настройки по умолчанию; файл будет сохранён под другим именем.</translation>
    </message>
    <message>
        <source>A damaged file was kept under another name:</source>
        <translation>Повреждённый файл сохранён под другим именем:</translation>
    </message>
    <message>
        <source>Kivora LX front panel</source>
        <translation>Панель Kivora LX</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Сброс</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Настройки</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Справка</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Single</source>
        <translation>Одиночный</translation>
    </message>
    <message>
        <source>Dual</source>
        <translation>Двойной</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Раздельный</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Загрузить</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Silence everything and reset the synthesizer</source>
        <translation>Заглушить всё и сбросить синтезатор</translation>
    </message>
    <message>
        <source>One voice on all keys</source>
        <translation>Один голос на всех клавишах</translation>
    </message>
    <message>
        <source>Two voices on each key</source>
        <translation>Два голоса на каждой клавише</translation>
    </message>
    <message>
        <source>Load preset</source>
        <translation>Загрузить пресет</translation>
    </message>
    <message>
        <source>Save preset</source>
        <translation>Сохранить пресет</translation>
    </message>
    <message>
        <source>Show the recorder</source>
        <translation>Показать рекордер</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Темп</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Метроном</translation>
    </message>
    <message>
        <source>Record</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Stop recording</source>
        <translation>Остановить запись</translation>
    </message>
    <message>
        <source>Recorded time</source>
        <translation>Время записи</translation>
    </message>
    <message>
        <source>Computer keys an octave down</source>
        <translation>Клавиши компьютера на октаву ниже</translation>
    </message>
    <message>
        <source>Computer keys an octave up</source>
        <translation>Клавиши компьютера на октаву выше</translation>
    </message>
    <message>
        <source>Octave shift of the computer keys</source>
        <translation>Октавный сдвиг клавиш компьютера</translation>
    </message>
    <message>
        <source>Patch of voice 1</source>
        <translation>Тембр голоса 1</translation>
    </message>
    <message>
        <source>Patch of voice 2</source>
        <translation>Тембр голоса 2</translation>
    </message>
    <message>
        <source>Transposition of voice 1</source>
        <translation>Транспозиция голоса 1</translation>
    </message>
    <message>
        <source>Transposition of voice 2</source>
        <translation>Транспозиция голоса 2</translation>
    </message>
    <message>
        <source>Volume of voice 1</source>
        <translation>Громкость голоса 1</translation>
    </message>
    <message>
        <source>Volume of voice 2</source>
        <translation>Громкость голоса 2</translation>
    </message>
    <message>
        <source>Change the value</source>
        <translation>Изменить значение</translation>
    </message>
    <message>
        <source>Decrease the value</source>
        <translation>Уменьшить значение</translation>
    </message>
    <message>
        <source>Increase the value</source>
        <translation>Увеличить значение</translation>
    </message>
    <message>
        <source>Arpeggio</source>
        <translation>Арпеджио</translation>
    </message>
    <message>
        <source>Show the arpeggiators</source>
        <translation>Показать арпеджиаторы</translation>
    </message>
    <message>
        <source>Arpeggiator 1</source>
        <translation>Арпеджиатор 1</translation>
    </message>
    <message>
        <source>Arpeggiator 2</source>
        <translation>Арпеджиатор 2</translation>
    </message>
    <message>
        <source>Piano</source>
        <translation>Фортепиано</translation>
    </message>
    <message>
        <source>Computer keys that play the piano</source>
        <translation>Клавиши компьютера для игры на фортепиано</translation>
    </message>
    <message>
        <source>MIDI lamp</source>
        <translation>Индикатор MIDI</translation>
    </message>
    <message>
        <source>Bar lamp</source>
        <translation>Индикатор такта</translation>
    </message>
    <message>
        <source>Beat lamp</source>
        <translation>Индикатор доли</translation>
    </message>
    <message>
        <source>&amp;Load Preset...</source>
        <translation>&amp;Загрузить пресет...</translation>
    </message>
    <message>
        <source>&amp;Save Preset...</source>
        <translation>&amp;Сохранить пресет...</translation>
    </message>
    <message>
        <source>Save Recordin&amp;g...</source>
        <translation>Сохранить зап&amp;ись...</translation>
    </message>
    <message>
        <source>&amp;Arpeggio</source>
        <translation>&amp;Арпеджио</translation>
    </message>
    <message>
        <source>&amp;Metronome</source>
        <translation>&amp;Метроном</translation>
    </message>
    <message>
        <source>&amp;Record</source>
        <translation>За&amp;пись</translation>
    </message>
    <message>
        <source>&amp;Panic: Silence and Reset</source>
        <translation>&amp;Тишина и сброс</translation>
    </message>
    <message>
        <source>S&amp;ettings...</source>
        <translation>&amp;Настройки...</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>Справ&amp;ка</translation>
    </message>
    <message>
        <source>A&amp;bout</source>
        <translation>&amp;О программе</translation>
    </message>
    <message>
        <source>&amp;Quit</source>
        <translation>В&amp;ыход</translation>
    </message>
    <message>
        <source>S&amp;ingle Voice</source>
        <translation>О&amp;диночный голос</translation>
    </message>
    <message>
        <source>&amp;Dual Voices</source>
        <translation>Два &amp;голоса</translation>
    </message>
    <message>
        <source>Spli&amp;t Keyboard</source>
        <translation>&amp;Раздельная клавиатура</translation>
    </message>
    <message>
        <source>&amp;Note Names</source>
        <translation>Наз&amp;вания нот</translation>
    </message>
    <message>
        <source>Key &amp;Colors</source>
        <translation>&amp;Цвета клавиш</translation>
    </message>
    <message>
        <source>&amp;None</source>
        <translation>&amp;Нет</translation>
    </message>
    <message>
        <source>&amp;Rainbow</source>
        <translation>&amp;Радуга</translation>
    </message>
    <message>
        <source>&amp;Scriabin</source>
        <translation>&amp;Скрябин</translation>
    </message>
    <message>
        <source>Lang&amp;uage</source>
        <comment>interface language</comment>
        <translation>&amp;Язык</translation>
    </message>
    <message>
        <source>Failed to start MIDI recording.</source>
        <translation>Не удалось начать запись MIDI.</translation>
    </message>
    <message>
        <source>Failed to stop MIDI recording.</source>
        <translation>Не удалось остановить запись MIDI.</translation>
    </message>
    <message>
        <source>Save MIDI File</source>
        <translation>Сохранение MIDI-файла</translation>
    </message>
    <message>
        <source>Failed to write MIDI file.</source>
        <translation>Не удалось записать MIDI-файл.</translation>
    </message>
    <message>
        <source>Do you want to save the recording?</source>
        <translation>Сохранить запись?</translation>
    </message>
    <message>
        <source>Recording Not Saved</source>
        <translation>Запись не сохранена</translation>
    </message>
    <message>
        <source>A recording of %1 (minutes and seconds), begun on %2, was not saved.</source>
        <translation>Запись длиной %1 (минуты и секунды), начатая %2, не была сохранена.</translation>
    </message>
    <message>
        <source>Ask &amp;later</source>
        <translation>Спросить &amp;позже</translation>
    </message>
    <message>
        <source>Error Loading Wallpaper</source>
        <translation>Ошибка загрузки изображения</translation>
    </message>
    <message>
        <source>ON</source>
        <translation>ВКЛ</translation>
    </message>
    <message>
        <source>OFF</source>
        <translation>ВЫКЛ</translation>
    </message>
    <message>
        <source>Previous Settings</source>
        <translation>Прежние настройки</translation>
    </message>
    <message>
        <source>SPLIT</source>
        <translation>РАЗДЕЛЬНЫЙ</translation>
    </message>
    <message>
        <source>DUAL</source>
        <translation>ДВОЙНОЙ</translation>
    </message>
    <message>
        <source>SINGLE</source>
        <translation>ОДИНОЧНЫЙ</translation>
    </message>
    <message>
        <source>Recording has been automatically stopped because you were not playing anything for too long.</source>
        <translation>Запись остановлена автоматически: вы слишком долго ничего не играли.</translation>
    </message>
    <message>
        <source>Recording has been automatically stopped because the recording is too long.</source>
        <translation>Запись остановлена автоматически: она слишком длинная.</translation>
    </message>
    <message>
        <source>Maximal recording time is 60 minutes.
If you are not playing for 30 seconds, recording is stopped.</source>
        <translation>Наибольшая длина записи — 60 минут.
Если вы не играете 30 секунд, запись останавливается.</translation>
    </message>
    <message>
        <source>Cannot determine image size:</source>
        <translation>Не удаётся определить размер изображения:</translation>
    </message>
    <message>
        <source>Failed to load wallpaper image from:</source>
        <translation>Не удалось загрузить изображение из:</translation>
    </message>
    <message>
        <source>Failed to save wallpaper cache to:</source>
        <translation>Не удалось сохранить подготовленное изображение в:</translation>
    </message>
    <message>
        <source>Failed to save wallpaper cache information to:</source>
        <translation>Не удалось сохранить сведения об изображении в:</translation>
    </message>
    <message>
        <source>Recording %1</source>
        <comment>suggested file name</comment>
        <translation>Запись %1</translation>
    </message>
    <message numerus="yes">
        <source>Messages of the MIDI keyboard were lost %n time(s), and its held keys were released.</source>
        <translation>
            <numerusform>Сообщения MIDI-клавиатуры терялись %n раз, удержанные на ней клавиши были отпущены.</numerusform>
            <numerusform>Сообщения MIDI-клавиатуры терялись %n раза, удержанные на ней клавиши были отпущены.</numerusform>
            <numerusform>Сообщения MIDI-клавиатуры терялись %n раз, удержанные на ней клавиши были отпущены.</numerusform>
        </translation>
    </message>
    <message>
        <source>The MIDI keyboard sends faster than the computer takes it: messages were lost. The keys that it held were released. The MIDI lamp tells how often.</source>
        <translation>MIDI-клавиатура передаёт быстрее, чем принимает компьютер: часть сообщений потеряна. Удержанные на ней клавиши отпущены. Сколько раз это случилось, подскажет индикатор MIDI.</translation>
    </message>
    <message>
        <source>The recording cannot be kept on the disk until the next start, so the program goes on. Save the recording in another folder, or discard it.</source>
        <translation>Запись нельзя сохранить на диске до следующего запуска, поэтому программа продолжает работу. Сохраните запись в другую папку или откажитесь от неё.</translation>
    </message>
    <message>
        <source>Primary voice arpeggiator</source>
        <translation>Арпеджиатор основного голоса</translation>
    </message>
    <message>
        <source>Secondary voice arpeggiator</source>
        <translation>Арпеджиатор второго голоса</translation>
    </message>
    <message>
        <source>The settings file cannot be read at present. The default settings are in force. The file is left as it is; what you change is kept beside it and taken over when it can be read.</source>
        <translation>Файл настроек сейчас не читается. Действуют настройки по умолчанию. Файл оставлен как есть; то, что вы измените, хранится рядом с ним и вступит в силу, когда файл удастся прочитать.</translation>
    </message>
    <message>
        <source>Count-in: %1</source>
        <comment>beats that are left</comment>
        <translation>Отсчёт: %1</translation>
    </message>
    <message>
        <source>A file cannot be read. Press here for more.</source>
        <translation>Файл не читается. Нажмите здесь, чтобы узнать больше.</translation>
    </message>
    <message>
        <source>A recording is not safe on the disk. Press here to save it.</source>
        <translation>Запись на диске не сохранена. Нажмите здесь, чтобы сохранить её.</translation>
    </message>
    <message numerus="yes">
        <source>Its file is damaged: %n event(s) of it are missing.</source>
        <translation>
            <numerusform>Её файл повреждён: не хватает %n события.</numerusform>
            <numerusform>Её файл повреждён: не хватает %n событий.</numerusform>
            <numerusform>Её файл повреждён: не хватает %n событий.</numerusform>
        </translation>
    </message>
    <message>
        <source>It is not safe on the disk: it is lost when the program ends.</source>
        <translation>Уберечь её на диске не удалось: при завершении программы она пропадёт.</translation>
    </message>
    <message>
        <source>The damaged file of a recording was kept under another name:</source>
        <translation>Повреждённый файл записи сохранён под другим именем:</translation>
    </message>
    <message>
        <source>A recording that waits to be saved cannot be read now. It stays where it is:</source>
        <translation>Запись, которая ждёт сохранения, сейчас не читается. Она остаётся на месте:</translation>
    </message>
    <message>
        <source>A bass voice below the split point, at first middle C, the main voice from it. An octave shift brings the bass to the computer keys.</source>
        <translation>Басовый голос ниже точки раздела, сначала это «до» первой октавы, основной — от неё и выше. Со сдвигом октавы бас играют клавиши компьютера.</translation>
    </message>
    <message>
        <source>Test My &amp;Keyboard...</source>
        <translation>Пров&amp;ерка клавиатуры...</translation>
    </message>
    <message>
        <source>Save What I &amp;Just Played...</source>
        <translation>Сохранить то&amp;лько что сыгранное...</translation>
    </message>
    <message>
        <source>Save What I Just Played</source>
        <translation>Сохранить только что сыгранное</translation>
    </message>
    <message>
        <source>It is kept in memory only, for 15 minutes, and is lost when the program ends.</source>
        <translation>Сыгранное хранится только в памяти, 15 минут, и пропадёт, когда программа завершит работу.</translation>
    </message>
    <message>
        <source>You have played %1 (minutes and seconds).</source>
        <translation>Вы играли %1 (минуты и секунды).</translation>
    </message>
    <message>
        <source>You have played %1 since your last pause, and %2 in all (minutes and seconds).</source>
        <translation>После последней паузы вы играли %1, а всего %2 (минуты и секунды).</translation>
    </message>
    <message>
        <source>Since the &amp;Pause</source>
        <translation>После &amp;паузы</translation>
    </message>
    <message>
        <source>&amp;All of It</source>
        <translation>&amp;Всё</translation>
    </message>
    <message>
        <source>Nothing was played in the last 15 minutes. What was played before the program was started is not kept.</source>
        <translation>За последние 15 минут ничего не сыграно. То, что игралось до запуска программы, не хранится.</translation>
    </message>
    <message>
        <source>What you play is not kept, since that is switched off in the settings.</source>
        <translation>То, что вы играете, не хранится: это выключено в настройках.</translation>
    </message>
    <message>
        <source>Failed to save the settings.</source>
        <translation>Не удалось сохранить настройки.</translation>
    </message>
    <message>
        <source>Si&amp;ze</source>
        <translation>Масшта&amp;б</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>Accessibilit&amp;y</source>
        <translation>Дост&amp;упность</translation>
    </message>
    <message>
        <source>Contrast of the &amp;Desktop</source>
        <translation>Контраст &amp;рабочего стола</translation>
    </message>
    <message>
        <source>&amp;High Contrast</source>
        <translation>&amp;Высокий контраст</translation>
    </message>
    <message>
        <source>&amp;Usual Contrast</source>
        <translation>&amp;Обычный контраст</translation>
    </message>
    <message>
        <source>&amp;Quiet while Playing</source>
        <translation>&amp;Тишина во время игры</translation>
    </message>
    <message>
        <source>Tap the tempo</source>
        <translation>Отстучать темп</translation>
    </message>
    <message>
        <source>Tap</source>
        <comment>legend of a key</comment>
        <translation>Тап</translation>
    </message>
    <message>
        <source>Latch the Chord</source>
        <translation>Удерживать аккорд</translation>
    </message>
    <message>
        <source>Latch and Swing...</source>
        <translation>Удержание и свинг...</translation>
    </message>
    <message>
        <source>Ho&amp;w the Metronome Sounds...</source>
        <translation>Как зву&amp;чит метроном...</translation>
    </message>
    <message>
        <source>Tap the Temp&amp;o</source>
        <translation>Отстучат&amp;ь темп</translation>
    </message>
    <message>
        <source>&amp;Velocity...</source>
        <translation>Сила нажатия клави&amp;ш...</translation>
    </message>
    <message>
        <source>Hear the Recording</source>
        <translation>Прослушать запись</translation>
    </message>
    <message>
        <source>Play a MIDI &amp;File...</source>
        <translation>Воспроизвести MIDI-&amp;файл...</translation>
    </message>
    <message>
        <source>Play or Pause the File</source>
        <translation>Воспроизвести или приостановить файл</translation>
    </message>
    <message>
        <source>Write the panel&apos;s tempo</source>
        <translation>Записывать темп панели</translation>
    </message>
    <message>
        <source>There is no recording that has ended since the program was started.</source>
        <translation>С запуска программы ни одна запись не закончилась.</translation>
    </message>
    <message>
        <source>The last recording</source>
        <translation>Последняя запись</translation>
    </message>
    <message>
        <source>No computer key plays the bass: press here for octave shift −%1</source>
        <translation>Клавиши компьютера до баса не достают: нажмите здесь, сдвиг октавы −%1</translation>
    </message>
    <message>
        <source>Piano Keys</source>
        <translation>Клавиши фортепиано</translation>
    </message>
    <message>
        <source>%1 Keys</source>
        <translation>Клавиш: %1</translation>
    </message>
    <message>
        <source>A recording runs. It can be heard once it has ended.</source>
        <translation>Идёт запись. Её можно будет прослушать, когда она закончится.</translation>
    </message>
    <message>
        <source>Wheels and Pedals</source>
        <translation>Колёса и педали</translation>
    </message>
    <message>
        <source>Show beside the Piano</source>
        <translation>Показывать рядом с фортепиано</translation>
    </message>
    <message>
        <source>Pitch Bend, in Semitones</source>
        <translation>Изменение высоты, полутонов</translation>
    </message>
    <message>
        <source>MIDI Learn...</source>
        <translation>Управление с MIDI-клавиатуры...</translation>
    </message>
    <message>
        <source>The file of what is bound on MIDI keyboards is damaged. What is whole in it is in force; the file will be kept under another name.</source>
        <translation>Файл назначений для MIDI-клавиатур повреждён. То, что в нём уцелело, действует; файл будет сохранён под другим именем.</translation>
    </message>
    <message>
        <source>The file of what is bound on MIDI keyboards cannot be read at present. Nothing is bound.</source>
        <translation>Файл назначений для MIDI-клавиатур сейчас не читается. Ничего не назначено.</translation>
    </message>
    <message>
        <source>Some of what is bound on MIDI keyboards means nothing to this version. It stays in its file, and the rest is in force.</source>
        <translation>Часть назначений для MIDI-клавиатур этой версии неизвестна. Она остаётся в своём файле, остальные действуют.</translation>
    </message>
    <message>
        <source>There is no preset that can be loaded</source>
        <translation>Нет пресета, который можно загрузить</translation>
    </message>
</context>
<context>
    <name>LatchAndSwing</name>
    <message>
        <source>Latch and Swing</source>
        <translation>Удержание и свинг</translation>
    </message>
    <message>
        <source>Arpeggiator 1</source>
        <translation>Арпеджиатор 1</translation>
    </message>
    <message>
        <source>Arpeggiator 2</source>
        <translation>Арпеджиатор 2</translation>
    </message>
    <message>
        <source>Latch: the chord stays until the next one begins</source>
        <translation>Удержание: аккорд звучит, пока не начнётся следующий</translation>
    </message>
    <message>
        <source>Swing:</source>
        <translation>Свинг:</translation>
    </message>
    <message>
        <source>Where the second of two steps comes: 50 is straight, 67 is a triplet&apos;s place, 75 a dotted note&apos;s</source>
        <translation>Где стоит второй из двух шагов: 50 — ровно, 67 — место триоли, 75 — после ноты с точкой</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>ListenButton</name>
    <message>
        <source>Listen</source>
        <translation>Прослушать</translation>
    </message>
</context>
<context>
    <name>Locale Names</name>
    <message>
        <source>Russian</source>
        <translation>Русский</translation>
    </message>
</context>
<context>
    <name>Localization</name>
    <message>
        <source>(null)</source>
        <extracomment>The locale suffix of file names, for example &quot;_ru&quot;.</extracomment>
        <translation>_ru</translation>
    </message>
</context>
<context>
    <name>Localized Keyboard</name>
    <message>
        <source>1</source>
        <translation>1</translation>
    </message>
    <message>
        <source>2</source>
        <translation>2</translation>
    </message>
    <message>
        <source>3</source>
        <translation>3</translation>
    </message>
    <message>
        <source>4</source>
        <translation>4</translation>
    </message>
    <message>
        <source>5</source>
        <translation>5</translation>
    </message>
    <message>
        <source>6</source>
        <translation>6</translation>
    </message>
    <message>
        <source>7</source>
        <translation>7</translation>
    </message>
    <message>
        <source>8</source>
        <translation>8</translation>
    </message>
    <message>
        <source>9</source>
        <translation>9</translation>
    </message>
    <message>
        <source>0</source>
        <translation>0</translation>
    </message>
    <message>
        <source>-</source>
        <translation>-</translation>
    </message>
    <message>
        <source>=</source>
        <translation>=</translation>
    </message>
    <message>
        <source>!</source>
        <translation>!</translation>
    </message>
    <message>
        <source>@</source>
        <translation>&quot;</translation>
    </message>
    <message>
        <source>#</source>
        <translation>№</translation>
    </message>
    <message>
        <source>$</source>
        <translation>;</translation>
    </message>
    <message>
        <source>%</source>
        <translation>%</translation>
    </message>
    <message>
        <source>^</source>
        <translation>:</translation>
    </message>
    <message>
        <source>&amp;</source>
        <translation>?</translation>
    </message>
    <message>
        <source>*</source>
        <translation>*</translation>
    </message>
    <message>
        <source>(</source>
        <translation>(</translation>
    </message>
    <message>
        <source>)</source>
        <translation>)</translation>
    </message>
    <message>
        <source>_</source>
        <translation>_</translation>
    </message>
    <message>
        <source>+</source>
        <translation>+</translation>
    </message>
    <message>
        <source>[</source>
        <translation>х</translation>
    </message>
    <message>
        <source>{</source>
        <translation>Х</translation>
    </message>
    <message>
        <source>]</source>
        <translation>ъ</translation>
    </message>
    <message>
        <source>}</source>
        <translation>Ъ</translation>
    </message>
    <message>
        <source>;</source>
        <translation>ж</translation>
    </message>
    <message>
        <source>:</source>
        <translation>Ж</translation>
    </message>
    <message>
        <source>&apos;</source>
        <translation>э</translation>
    </message>
    <message>
        <source>&quot;</source>
        <translation>Э</translation>
    </message>
    <message>
        <source>\</source>
        <translation>\</translation>
    </message>
    <message>
        <source>|</source>
        <translation>/</translation>
    </message>
    <message>
        <source>,</source>
        <translation>б</translation>
    </message>
    <message>
        <source>&lt;</source>
        <translation>Б</translation>
    </message>
    <message>
        <source>.</source>
        <translation>ю</translation>
    </message>
    <message>
        <source>&gt;</source>
        <translation>Ю</translation>
    </message>
    <message>
        <source>/</source>
        <translation>.</translation>
    </message>
    <message>
        <source>?</source>
        <translation>,</translation>
    </message>
    <message>
        <source>a</source>
        <translation>ф</translation>
    </message>
    <message>
        <source>b</source>
        <translation>и</translation>
    </message>
    <message>
        <source>c</source>
        <translation>с</translation>
    </message>
    <message>
        <source>d</source>
        <translation>в</translation>
    </message>
    <message>
        <source>e</source>
        <translation>у</translation>
    </message>
    <message>
        <source>f</source>
        <translation>а</translation>
    </message>
    <message>
        <source>g</source>
        <translation>п</translation>
    </message>
    <message>
        <source>h</source>
        <translation>р</translation>
    </message>
    <message>
        <source>i</source>
        <translation>ш</translation>
    </message>
    <message>
        <source>j</source>
        <translation>о</translation>
    </message>
    <message>
        <source>k</source>
        <translation>л</translation>
    </message>
    <message>
        <source>l</source>
        <translation>д</translation>
    </message>
    <message>
        <source>m</source>
        <translation>ь</translation>
    </message>
    <message>
        <source>n</source>
        <translation>т</translation>
    </message>
    <message>
        <source>o</source>
        <translation>щ</translation>
    </message>
    <message>
        <source>p</source>
        <translation>з</translation>
    </message>
    <message>
        <source>q</source>
        <translation>й</translation>
    </message>
    <message>
        <source>r</source>
        <translation>к</translation>
    </message>
    <message>
        <source>s</source>
        <translation>ы</translation>
    </message>
    <message>
        <source>t</source>
        <translation>е</translation>
    </message>
    <message>
        <source>u</source>
        <translation>г</translation>
    </message>
    <message>
        <source>v</source>
        <translation>м</translation>
    </message>
    <message>
        <source>w</source>
        <translation>ц</translation>
    </message>
    <message>
        <source>x</source>
        <translation>ч</translation>
    </message>
    <message>
        <source>y</source>
        <translation>н</translation>
    </message>
    <message>
        <source>z</source>
        <translation>я</translation>
    </message>
    <message>
        <source>A</source>
        <translation>Ф</translation>
    </message>
    <message>
        <source>B</source>
        <translation>И</translation>
    </message>
    <message>
        <source>C</source>
        <translation>С</translation>
    </message>
    <message>
        <source>D</source>
        <translation>В</translation>
    </message>
    <message>
        <source>E</source>
        <translation>У</translation>
    </message>
    <message>
        <source>F</source>
        <translation>А</translation>
    </message>
    <message>
        <source>G</source>
        <translation>П</translation>
    </message>
    <message>
        <source>H</source>
        <translation>Р</translation>
    </message>
    <message>
        <source>I</source>
        <translation>Ш</translation>
    </message>
    <message>
        <source>J</source>
        <translation>О</translation>
    </message>
    <message>
        <source>K</source>
        <translation>Л</translation>
    </message>
    <message>
        <source>L</source>
        <translation>Д</translation>
    </message>
    <message>
        <source>M</source>
        <translation>Ь</translation>
    </message>
    <message>
        <source>N</source>
        <translation>Т</translation>
    </message>
    <message>
        <source>O</source>
        <translation>Щ</translation>
    </message>
    <message>
        <source>P</source>
        <translation>З</translation>
    </message>
    <message>
        <source>Q</source>
        <translation>Й</translation>
    </message>
    <message>
        <source>R</source>
        <translation>К</translation>
    </message>
    <message>
        <source>S</source>
        <translation>Ы</translation>
    </message>
    <message>
        <source>T</source>
        <translation>Е</translation>
    </message>
    <message>
        <source>U</source>
        <translation>Г</translation>
    </message>
    <message>
        <source>V</source>
        <translation>М</translation>
    </message>
    <message>
        <source>W</source>
        <translation>Ц</translation>
    </message>
    <message>
        <source>X</source>
        <translation>Ч</translation>
    </message>
    <message>
        <source>Y</source>
        <translation>Н</translation>
    </message>
    <message>
        <source>Z</source>
        <translation>Я</translation>
    </message>
</context>
<context>
    <name>MIDIFile</name>
    <message>
        <source>It is no MIDI file (byte %1).</source>
        <translation>Это не MIDI-файл (байт %1).</translation>
    </message>
    <message>
        <source>It is a MIDI file of a kind that cannot be played (byte %1).</source>
        <translation>Это MIDI-файл такого вида, который нельзя сыграть (байт %1).</translation>
    </message>
    <message>
        <source>It does not say how long its ticks are (byte %1).</source>
        <translation>В нём не указана длина отсчёта времени (байт %1).</translation>
    </message>
    <message>
        <source>It is cut short: it ends at byte %1, inside a track.</source>
        <translation>Файл обрезан: он кончается на байте %1, внутри дорожки.</translation>
    </message>
    <message>
        <source>It is cut short: it ends at byte %1, and a track is missing.</source>
        <translation>Файл обрезан: он кончается на байте %1, и дорожки не хватает.</translation>
    </message>
    <message>
        <source>It is damaged: a track ends inside a message (byte %1).</source>
        <translation>Файл повреждён: дорожка кончается внутри сообщения (байт %1).</translation>
    </message>
    <message>
        <source>It is damaged: a number is too long (byte %1).</source>
        <translation>Файл повреждён: слишком длинное число (байт %1).</translation>
    </message>
    <message>
        <source>It is damaged: a message stands at an impossible time (byte %1).</source>
        <translation>Файл повреждён: сообщение стоит на невозможном времени (байт %1).</translation>
    </message>
    <message>
        <source>It is damaged: no message begins at byte %1.</source>
        <translation>Файл повреждён: на байте %1 не начинается сообщение.</translation>
    </message>
    <message>
        <source>It is damaged: an unknown message stands at byte %1.</source>
        <translation>Файл повреждён: на байте %1 стоит неизвестное сообщение.</translation>
    </message>
    <message>
        <source>It is damaged: a message is cut short at byte %1.</source>
        <translation>Файл повреждён: сообщение обрывается на байте %1.</translation>
    </message>
    <message>
        <source>It is damaged: the tempo at byte %1 is none.</source>
        <translation>Файл повреждён: на байте %1 стоит негодный темп.</translation>
    </message>
</context>
<context>
    <name>MIDIFileNames</name>
    <message>
        <source>MIDI Files</source>
        <translation>MIDI-файлы</translation>
    </message>
</context>
<context>
    <name>MainDisplay</name>
    <message>
        <source>Preset</source>
        <translation>Пресет</translation>
    </message>
    <message>
        <source>Voice mode</source>
        <translation>Режим голосов</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Темп</translation>
    </message>
    <message>
        <source>Last velocity</source>
        <translation>Сила последней ноты</translation>
    </message>
    <message>
        <source>Sustain pedal</source>
        <translation>Педаль сустейна</translation>
    </message>
    <message>
        <source>Instrument family of voice %1</source>
        <translation>Группа инструментов голоса %1</translation>
    </message>
    <message>
        <source>Patch of voice %1</source>
        <translation>Тембр голоса %1</translation>
    </message>
    <message>
        <source>Transposition of voice %1</source>
        <translation>Транспозиция голоса %1</translation>
    </message>
    <message>
        <source>Volume of voice %1</source>
        <translation>Громкость голоса %1</translation>
    </message>
    <message>
        <source>Patch name of voice %1</source>
        <translation>Название тембра голоса %1</translation>
    </message>
    <message>
        <source>Click to edit the patch, right click to choose one</source>
        <translation>Щёлкните, чтобы менять тембр; правой кнопкой — чтобы выбрать</translation>
    </message>
    <message>
        <source>Transpose</source>
        <translation>Трансп.</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Громк.</translation>
    </message>
    <message>
        <source>Velocity</source>
        <translation>Сила</translation>
    </message>
    <message>
        <source>Sustain</source>
        <translation>Педаль</translation>
    </message>
</context>
<context>
    <name>MetronomeSettings</name>
    <message>
        <source>High wood block</source>
        <translation>Высокий вуд-блок</translation>
    </message>
    <message>
        <source>Low wood block</source>
        <translation>Низкий вуд-блок</translation>
    </message>
    <message>
        <source>Claves</source>
        <translation>Клавес</translation>
    </message>
    <message>
        <source>Side stick</source>
        <translation>Удар по ободу</translation>
    </message>
    <message>
        <source>Closed hi-hat</source>
        <translation>Закрытый хай-хэт</translation>
    </message>
    <message>
        <source>Cowbell</source>
        <translation>Коровий колокольчик</translation>
    </message>
    <message>
        <source>Mute triangle</source>
        <translation>Приглушённый треугольник</translation>
    </message>
    <message>
        <source>Open triangle</source>
        <translation>Открытый треугольник</translation>
    </message>
    <message>
        <source>Metronome click</source>
        <translation>Щелчок метронома</translation>
    </message>
    <message>
        <source>Metronome bell</source>
        <translation>Звонок метронома</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Метроном</translation>
    </message>
    <message>
        <source>Sound:</source>
        <translation>Звук:</translation>
    </message>
    <message>
        <source>First beat of a bar:</source>
        <translation>Первая доля такта:</translation>
    </message>
    <message>
        <source>Other beats:</source>
        <translation>Остальные доли:</translation>
    </message>
    <message>
        <source>Loudness:</source>
        <translation>Громкость:</translation>
    </message>
    <message>
        <source>Beats in a bar:</source>
        <translation>Долей в такте:</translation>
    </message>
    <message>
        <source>Count-in before a recording:</source>
        <translation>Отсчёт перед записью:</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Note %1</source>
        <translation>Нота %1</translation>
    </message>
    <message>
        <source>None: the lamps alone</source>
        <translation>Нет: только индикаторы</translation>
    </message>
    <message>
        <source>On the chosen synthesizer</source>
        <translation>На выбранном синтезаторе</translation>
    </message>
    <message>
        <source>On the built-in synthesizer alone</source>
        <translation>Только на встроенном синтезаторе</translation>
    </message>
    <message>
        <source>None</source>
        <comment>count-in</comment>
        <translation>Нет</translation>
    </message>
    <message>
        <source>One bar</source>
        <translation>Один такт</translation>
    </message>
    <message>
        <source>Two bars</source>
        <translation>Два такта</translation>
    </message>
</context>
<context>
    <name>MidiControlTexts</name>
    <message>
        <source>Volume of voice 1</source>
        <translation>Громкость голоса 1</translation>
    </message>
    <message>
        <source>Volume of voice 2</source>
        <translation>Громкость голоса 2</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Темп</translation>
    </message>
    <message>
        <source>Next patch of voice 1</source>
        <translation>Следующий тембр голоса 1</translation>
    </message>
    <message>
        <source>Previous patch of voice 1</source>
        <translation>Предыдущий тембр голоса 1</translation>
    </message>
    <message>
        <source>Next patch of voice 2</source>
        <translation>Следующий тембр голоса 2</translation>
    </message>
    <message>
        <source>Previous patch of voice 2</source>
        <translation>Предыдущий тембр голоса 2</translation>
    </message>
    <message>
        <source>Next preset</source>
        <translation>Следующий пресет</translation>
    </message>
    <message>
        <source>Previous preset</source>
        <translation>Предыдущий пресет</translation>
    </message>
    <message>
        <source>Record and stop</source>
        <translation>Запись и стоп</translation>
    </message>
    <message>
        <source>Panic</source>
        <translation>Сброс</translation>
    </message>
    <message>
        <source>Next voice mode</source>
        <translation>Следующий режим голосов</translation>
    </message>
    <message>
        <source>Single voice</source>
        <translation>Один голос</translation>
    </message>
    <message>
        <source>Dual voices</source>
        <translation>Два голоса</translation>
    </message>
    <message>
        <source>Split keyboard</source>
        <translation>Разделённая клавиатура</translation>
    </message>
    <message>
        <source>Arpeggio on or off</source>
        <translation>Арпеджио вкл. и выкл.</translation>
    </message>
    <message>
        <source>Arpeggiator 1 on or off</source>
        <translation>Арпеджиатор 1 вкл. и выкл.</translation>
    </message>
    <message>
        <source>Arpeggiator 2 on or off</source>
        <translation>Арпеджиатор 2 вкл. и выкл.</translation>
    </message>
    <message>
        <source>Latch on or off</source>
        <translation>Удержание аккорда вкл. и выкл.</translation>
    </message>
    <message>
        <source>Note %1, channel %2</source>
        <translation>Нота %1, канал %2</translation>
    </message>
    <message>
        <source>Program %1, channel %2</source>
        <translation>Программа %1, канал %2</translation>
    </message>
    <message>
        <source>Controller %1, channel %2</source>
        <translation>Контроллер %1, канал %2</translation>
    </message>
</context>
<context>
    <name>MidiLearn</name>
    <message>
        <source>MIDI Learn</source>
        <translation>Управление с MIDI-клавиатуры</translation>
    </message>
    <message>
        <source>On the panel</source>
        <translation>На панели</translation>
    </message>
    <message>
        <source>On a MIDI keyboard</source>
        <translation>На MIDI-клавиатуре</translation>
    </message>
    <message>
        <source>What is bound</source>
        <translation>Что назначено</translation>
    </message>
    <message>
        <source>The button sends on and off in turn: each is a press</source>
        <translation>Кнопка с фиксацией: каждое переключение — нажатие</translation>
    </message>
    <message>
        <source>Learn</source>
        <translation>Назначить</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Убрать</translation>
    </message>
    <message>
        <source>Clear All</source>
        <translation>Убрать все</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Экспорт...</translation>
    </message>
    <message>
        <source>Import...</source>
        <translation>Импорт...</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Choose what to work from the MIDI keyboard, and press &quot;Learn&quot;.</source>
        <translation>Выберите, чем управлять с MIDI-клавиатуры, и нажмите «Назначить».</translation>
    </message>
    <message>
        <source>%1: move a knob or a fader of the MIDI keyboard.</source>
        <translation>%1: поверните ручку или сдвиньте фейдер MIDI-клавиатуры.</translation>
    </message>
    <message>
        <source>%1: press a button or a pad of the MIDI keyboard.</source>
        <translation>%1: нажмите кнопку или пэд MIDI-клавиатуры.</translation>
    </message>
    <message>
        <source>It is needed for playing and cannot be bound. Take another one.</source>
        <translation>Он нужен для игры, назначить его нельзя. Выберите другой.</translation>
    </message>
    <message>
        <source>It cannot set a value. Move a knob or a fader.</source>
        <translation>Этим нельзя задать значение. Поверните ручку или сдвиньте фейдер.</translation>
    </message>
    <message>
        <source>%1 is bound already: %2. Bind it to &quot;%3&quot; instead?</source>
        <translation>%1: уже назначено «%2». Назначить вместо этого «%3»?</translation>
    </message>
    <message>
        <source>Bound: %1.</source>
        <translation>Назначено: %1.</translation>
    </message>
    <message>
        <source>Clear everything that is bound, on devices that are not plugged in too?</source>
        <translation>Убрать все назначения, в том числе для отключённых устройств?</translation>
    </message>
    <message>
        <source>What is bound is in force, but could not be saved.</source>
        <translation>Назначения действуют, но сохранить их не удалось.</translation>
    </message>
    <message>
        <source>Export Bindings</source>
        <translation>Экспорт назначений</translation>
    </message>
    <message>
        <source>Bindings (*.ini)</source>
        <translation>Назначения (*.ini)</translation>
    </message>
    <message>
        <source>MIDI bindings</source>
        <comment>suggested file name</comment>
        <translation>Назначения MIDI</translation>
    </message>
    <message>
        <source>Exported to %1.</source>
        <translation>Записано в %1.</translation>
    </message>
    <message>
        <source>The bindings could not be exported.</source>
        <translation>Не удалось записать назначения.</translation>
    </message>
    <message>
        <source>Import Bindings</source>
        <translation>Импорт назначений</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Все файлы (*)</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>Файл не читается.</translation>
    </message>
    <message>
        <source>The file holds no bindings. Nothing has changed.</source>
        <translation>В файле нет назначений. Ничего не изменилось.</translation>
    </message>
    <message>
        <source>The file is damaged. Lines that cannot be understood: %1. Take over what is whole: %2?</source>
        <translation>Файл повреждён. Непонятных строк: %1. Взять уцелевшие (%2)?</translation>
    </message>
    <message>
        <source>Bindings taken over: %1.</source>
        <translation>Импортировано назначений: %1.</translation>
    </message>
    <message>
        <source>%1: a pitch bend or a pressure cannot be bound. Take another control, or let this one send a controller.</source>
        <translation>%1: колесо высоты тона и давление назначить нельзя. Выберите другую ручку или включите для этой в настройках клавиатуры передачу контроллера.</translation>
    </message>
    <message>
        <source>Lines of the file that mean nothing to this version: %1. Take over the others: %2?</source>
        <translation>Строк, которых эта версия не понимает: %1. Взять остальные (%2)?</translation>
    </message>
    <message>
        <source>No room for the others: %1.</source>
        <translation>Для остальных нет места: %1.</translation>
    </message>
</context>
<context>
    <name>Note name</name>
    <message>
        <source>C</source>
        <translation>До</translation>
    </message>
    <message>
        <source>C#</source>
        <translation>До-диез</translation>
    </message>
    <message>
        <source>D</source>
        <translation>Ре</translation>
    </message>
    <message>
        <source>D#</source>
        <translation>Ре-диез</translation>
    </message>
    <message>
        <source>E</source>
        <translation>Ми</translation>
    </message>
    <message>
        <source>F</source>
        <translation>Фа</translation>
    </message>
    <message>
        <source>F#</source>
        <translation>Фа-диез</translation>
    </message>
    <message>
        <source>G</source>
        <translation>Соль</translation>
    </message>
    <message>
        <source>G#</source>
        <translation>Соль-диез</translation>
    </message>
    <message>
        <source>A</source>
        <translation>Ля</translation>
    </message>
    <message>
        <source>A#</source>
        <translation>Ля-диез</translation>
    </message>
    <message>
        <source>B</source>
        <translation>Си</translation>
    </message>
    <message>
        <source>Db</source>
        <translation>Ре-бемоль</translation>
    </message>
    <message>
        <source>Eb</source>
        <translation>Ми-бемоль</translation>
    </message>
    <message>
        <source>Gb</source>
        <translation>Соль-бемоль</translation>
    </message>
    <message>
        <source>Ab</source>
        <translation>Ля-бемоль</translation>
    </message>
    <message>
        <source>Bb</source>
        <translation>Си-бемоль</translation>
    </message>
</context>
<context>
    <name>Octave names</name>
    <message>
        <source>GREAT</source>
        <translation>БОЛЬШАЯ</translation>
    </message>
    <message>
        <source>SMALL</source>
        <translation>МАЛАЯ</translation>
    </message>
    <message>
        <source>SUB-CONTRA</source>
        <translation>СУБКОНТРОКТАВА</translation>
    </message>
    <message>
        <source>CONTRA</source>
        <translation>КОНТРОКТАВА</translation>
    </message>
</context>
<context>
    <name>One-letter note name</name>
    <message>
        <source>C</source>
        <translation>C</translation>
    </message>
    <message>
        <source>C#</source>
        <translation>C#</translation>
    </message>
    <message>
        <source>D</source>
        <translation>D</translation>
    </message>
    <message>
        <source>D#</source>
        <translation>D#</translation>
    </message>
    <message>
        <source>E</source>
        <translation>E</translation>
    </message>
    <message>
        <source>F</source>
        <translation>F</translation>
    </message>
    <message>
        <source>F#</source>
        <translation>F#</translation>
    </message>
    <message>
        <source>G</source>
        <translation>G</translation>
    </message>
    <message>
        <source>G#</source>
        <translation>G#</translation>
    </message>
    <message>
        <source>A</source>
        <translation>A</translation>
    </message>
    <message>
        <source>A#</source>
        <translation>A#</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Db</source>
        <translation>Db</translation>
    </message>
    <message>
        <source>Eb</source>
        <translation>Eb</translation>
    </message>
    <message>
        <source>Gb</source>
        <translation>Gb</translation>
    </message>
    <message>
        <source>Ab</source>
        <translation>Ab</translation>
    </message>
    <message>
        <source>Bb</source>
        <translation>Bb</translation>
    </message>
</context>
<context>
    <name>PanelLegends</name>
    <message>
        <source>Voice mode</source>
        <translation>Режим голосов</translation>
    </message>
    <message>
        <source>Bar</source>
        <translation>Такт</translation>
    </message>
    <message>
        <source>Beat</source>
        <translation>Доля</translation>
    </message>
    <message>
        <source>Recorder</source>
        <translation>Рекордер</translation>
    </message>
    <message>
        <source>Octave shift</source>
        <translation>Сдвиг октавы</translation>
    </message>
    <message>
        <source>Patch</source>
        <translation>Тембр</translation>
    </message>
    <message>
        <source>Transpose</source>
        <translation>Транспозиция</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Громкость</translation>
    </message>
    <message>
        <source>Voice 1</source>
        <translation>Голос 1</translation>
    </message>
    <message>
        <source>Voice 2</source>
        <translation>Голос 2</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Значение</translation>
    </message>
    <message>
        <source>Preset</source>
        <translation>Пресет</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Вкл</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Правка</translation>
    </message>
    <message>
        <source>Tempo</source>
        <translation>Темп</translation>
    </message>
    <message>
        <source>Metronome</source>
        <translation>Метроном</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Время</translation>
    </message>
    <message>
        <source>Rec</source>
        <translation>Зап.</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Стоп</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Shift</translation>
    </message>
    <message>
        <source>play louder</source>
        <translation>играть громче</translation>
    </message>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
    <message>
        <source>play softer</source>
        <translation>играть тише</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Пробел</translation>
    </message>
    <message>
        <source>sustain pedal</source>
        <translation>педаль сустейна</translation>
    </message>
    <message>
        <source>Esc</source>
        <translation>Esc</translation>
    </message>
    <message>
        <source>silence and reset</source>
        <translation>тишина и сброс</translation>
    </message>
    <message>
        <source>Alt  −  +</source>
        <translation>Alt  −  +</translation>
    </message>
    <message>
        <source>change the value</source>
        <translation>изменить значение</translation>
    </message>
    <message>
        <source>Playing from the PC keyboard</source>
        <translation>Игра на клавиатуре компьютера</translation>
    </message>
    <message>
        <source>MIDI</source>
        <translation>MIDI</translation>
    </message>
    <message>
        <source>Arpeggio</source>
        <translation>Арпеджио</translation>
    </message>
    <message>
        <source>Octave −1</source>
        <translation>Октава −1</translation>
    </message>
    <message>
        <source>the bass of a split</source>
        <translation>бас раздельного режима</translation>
    </message>
</context>
<context>
    <name>PlayerWindow</name>
    <message>
        <source>Player</source>
        <translation>Проигрыватель</translation>
    </message>
    <message>
        <source>Open...</source>
        <translation>Открыть...</translation>
    </message>
    <message>
        <source>Stop</source>
        <translation>Стоп</translation>
    </message>
    <message>
        <source>Loop from Here</source>
        <translation>Повтор отсюда</translation>
    </message>
    <message>
        <source>Loop to Here</source>
        <translation>Повтор до этого места</translation>
    </message>
    <message>
        <source>No Loop</source>
        <translation>Без повтора</translation>
    </message>
    <message>
        <source>Tempo:</source>
        <translation>Темп:</translation>
    </message>
    <message>
        <source>Transposition:</source>
        <translation>Транспозиция:</translation>
    </message>
    <message>
        <source>In semitones; the percussion is not transposed</source>
        <translation>В полутонах; ударные не транспонируются</translation>
    </message>
    <message>
        <source>Position</source>
        <translation>Позиция</translation>
    </message>
    <message>
        <source>Position and length</source>
        <translation>Позиция и длительность</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Играть</translation>
    </message>
    <message>
        <source>Once more to pause</source>
        <translation>Ещё раз — пауза</translation>
    </message>
    <message>
        <source>What is whole of it can be played.</source>
        <translation>То, что в нём уцелело, можно воспроизвести.</translation>
    </message>
    <message>
        <source>Play a MIDI File</source>
        <translation>Воспроизвести MIDI-файл</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <comment>times of a loop</comment>
        <translation>с %1 до %2</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>position and length of a song</comment>
        <translation>%1 из %2</translation>
    </message>
</context>
<context>
    <name>Ports</name>
    <message>
        <source>All MIDI keyboards</source>
        <translation>Все MIDI-клавиатуры</translation>
    </message>
    <message>
        <source>Other programs (Kivora LX in)</source>
        <translation>Другие программы (Kivora LX in)</translation>
    </message>
    <message>
        <source>Other programs (Kivora LX out)</source>
        <translation>Другие программы (Kivora LX out)</translation>
    </message>
</context>
<context>
    <name>PresetList</name>
    <message>
        <source>Presets</source>
        <translation>Пресеты</translation>
    </message>
    <message>
        <source>Preset Name:</source>
        <translation>Имя пресета:</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Сохранить</translation>
    </message>
    <message>
        <source>Load</source>
        <translation>Загрузить</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Save Preset</source>
        <translation>Сохранение пресета</translation>
    </message>
    <message>
        <source>Load Preset</source>
        <translation>Загрузка пресета</translation>
    </message>
    <message>
        <source>Failed to load the preset.</source>
        <translation>Не удалось загрузить пресет.</translation>
    </message>
    <message>
        <source>Overwrite preset</source>
        <translation>Заменить пресет</translation>
    </message>
    <message>
        <source>Failed to save preset under this name.</source>
        <translation>Не удалось сохранить пресет под этим именем.</translation>
    </message>
    <message>
        <source>Delete preset</source>
        <translation>Удалить пресет</translation>
    </message>
    <message>
        <source>Failed to delete the preset.</source>
        <translation>Не удалось удалить пресет.</translation>
    </message>
    <message>
        <source>Please Confirm</source>
        <translation>Подтвердите</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Search in the presets</source>
        <translation>Поиск по пресетам</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Поиск</translation>
    </message>
    <message>
        <source>Order of the presets</source>
        <translation>Порядок пресетов</translation>
    </message>
    <message>
        <source>By Name</source>
        <translation>По имени</translation>
    </message>
    <message>
        <source>By Last Use</source>
        <translation>По использованию</translation>
    </message>
</context>
<context>
    <name>QGMPatchMenu</name>
    <message>
        <source>Last Used</source>
        <translation>Последние</translation>
    </message>
    <message>
        <source>Favorites</source>
        <translation>Избранные</translation>
    </message>
    <message>
        <source>Type to search</source>
        <translation>Введите для поиска</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>Ничего</translation>
    </message>
    <message>
        <source>Search: %1. Found: %2.</source>
        <translation>Поиск: %1. Найдено: %2.</translation>
    </message>
    <message>
        <source>%1: added to the favorites.</source>
        <translation>%1: добавлено в избранные.</translation>
    </message>
    <message>
        <source>%1: taken from the favorites.</source>
        <translation>%1: убрано из избранных.</translation>
    </message>
</context>
<context>
    <name>QPiano</name>
    <message>
        <source>Piano keyboard</source>
        <translation>Клавиатура фортепиано</translation>
    </message>
</context>
<context>
    <name>SongFile</name>
    <message>
        <source>%1 cannot be read.</source>
        <translation>%1 не удаётся прочитать.</translation>
    </message>
    <message>
        <source>%1 cannot be read: %2.</source>
        <translation>%1 не удаётся прочитать: %2.</translation>
    </message>
    <message>
        <source>%1 holds nothing that can be played.</source>
        <translation>В %1 нечего воспроизводить.</translation>
    </message>
</context>
<context>
    <name>SoundCheck</name>
    <message>
        <source>Sound Check</source>
        <translation>Проверка звука</translation>
    </message>
    <message>
        <source>Each audio system is tried with a short note...</source>
        <translation>Каждая звуковая система пробуется короткой нотой...</translation>
    </message>
    <message>
        <source>Check Again</source>
        <translation>Проверить снова</translation>
    </message>
    <message>
        <source>Play a Note</source>
        <translation>Сыграть ноту</translation>
    </message>
    <message>
        <source>Plays a note as a key does, to the synthesizer that is chosen.</source>
        <translation>Играет ноту, как это делает клавиша, на выбранном синтезаторе.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Well</source>
        <translation>Исправно</translation>
    </message>
    <message>
        <source>Hint</source>
        <translation>Совет</translation>
    </message>
    <message>
        <source>Trouble</source>
        <translation>Неисправность</translation>
    </message>
</context>
<context>
    <name>SoundReport</name>
    <message>
        <source>A key sounds: %1.</source>
        <translation>Клавиша звучит: %1.</translation>
    </message>
    <message>
        <source>No key sounds. What is marked below says why.</source>
        <translation>Ни одна клавиша не звучит. Причины отмечены ниже.</translation>
    </message>
    <message>
        <source>There is no synthesizer to play to.</source>
        <translation>Нет синтезатора, на котором можно играть.</translation>
    </message>
    <message>
        <source>Connect one, or see to the software synthesizer&apos;s sound font.</source>
        <translation>Подключите его или позаботьтесь о банке звуков программного синтезатора.</translation>
    </message>
    <message>
        <source>The chosen synthesizer, %1, is not connected.</source>
        <translation>Выбранный синтезатор, %1, не подключён.</translation>
    </message>
    <message>
        <source>Connect it, or choose another one in the settings.</source>
        <translation>Подключите его или выберите в настройках другой.</translation>
    </message>
    <message>
        <source>No sound font is found; without one the software synthesizer cannot play.</source>
        <translation>Банк звуков не найден; без него программный синтезатор играть не может.</translation>
    </message>
    <message>
        <source>Install the package timgm6mb-soundfont or, for a fuller sound, fluid-soundfont-gm, or choose a file in the settings.</source>
        <translation>Установите пакет timgm6mb-soundfont или, для более полного звука, fluid-soundfont-gm либо выберите файл в настройках.</translation>
    </message>
    <message>
        <source>The sound font %1 cannot be played. %2</source>
        <translation>Банк звуков %1 сыграть нельзя. %2</translation>
    </message>
    <message>
        <source>Choose another one in the settings.</source>
        <translation>Выберите в настройках другой.</translation>
    </message>
    <message>
        <source>The sound font is %1 (%2 MB).</source>
        <translation>Банк звуков: %1 (%2 МБ).</translation>
    </message>
    <message>
        <source>It is a small one; that of the package fluid-soundfont-gm sounds fuller.</source>
        <translation>Он мал; банк из пакета fluid-soundfont-gm звучит полнее.</translation>
    </message>
    <message>
        <source>%1 has taken a test note.</source>
        <translation>%1: пробная нота принята.</translation>
    </message>
    <message>
        <source>%1 does not play. %2</source>
        <translation>%1 не играет. %2</translation>
    </message>
    <message>
        <source>No audio system takes the sound.</source>
        <translation>Ни одна звуковая система не принимает звук.</translation>
    </message>
    <message>
        <source>Start a sound server (the package pipewire-pulse or pulseaudio), or connect a sound card.</source>
        <translation>Запустите звуковой сервер (пакет pipewire-pulse или pulseaudio) или подключите звуковую карту.</translation>
    </message>
    <message>
        <source>The latency is set to %1 ms.</source>
        <translation>Задана задержка %1 мс.</translation>
    </message>
    <message>
        <source>The system&apos;s sound is switched off.</source>
        <translation>Звук системы выключен.</translation>
    </message>
    <message>
        <source>Switch it on in the desktop&apos;s volume control, or with: pactl set-sink-mute @DEFAULT_SINK@ 0</source>
        <translation>Включите его регулятором громкости рабочего стола или командой: pactl set-sink-mute @DEFAULT_SINK@ 0</translation>
    </message>
    <message>
        <source>The system&apos;s volume is %1 %.</source>
        <translation>Громкость системы — %1 %.</translation>
    </message>
    <message>
        <source>Turn it up in the desktop&apos;s volume control.</source>
        <translation>Прибавьте её регулятором громкости рабочего стола.</translation>
    </message>
    <message>
        <source>The system&apos;s volume cannot be asked for.</source>
        <translation>Громкость системы узнать нельзя.</translation>
    </message>
    <message>
        <source>The package pulseaudio-utils is missing.</source>
        <translation>Не установлен пакет pulseaudio-utils.</translation>
    </message>
    <message>
        <source>The sound server does not tell it.</source>
        <translation>Звуковой сервер её не сообщает.</translation>
    </message>
    <message>
        <source>No MIDI device and no other program can be reached: %1</source>
        <translation>MIDI-устройства и другие программы недоступны: %1</translation>
    </message>
    <message>
        <source>MIDI devices and other programs can be reached.</source>
        <translation>MIDI-устройства и другие программы доступны.</translation>
    </message>
    <message>
        <source>the system&apos;s MIDI sequencer is not there.</source>
        <translation>в системе нет MIDI-секвенсора.</translation>
    </message>
    <message>
        <source>Load it with: sudo modprobe snd-seq</source>
        <translation>Загрузите его командой: sudo modprobe snd-seq</translation>
    </message>
    <message>
        <source>you may not use the system&apos;s MIDI sequencer.</source>
        <translation>у вас нет прав на MIDI-секвенсор системы.</translation>
    </message>
    <message>
        <source>Join the group audio with &quot;sudo adduser $USER audio&quot;, and log in again.</source>
        <translation>Вступите в группу audio командой «sudo adduser $USER audio» и войдите в систему заново.</translation>
    </message>
    <message>
        <source>the system&apos;s MIDI sequencer does not open.</source>
        <translation>MIDI-секвенсор системы не открывается.</translation>
    </message>
    <message>
        <source>Synthesizers: %1.</source>
        <translation>Синтезаторы: %1.</translation>
    </message>
    <message>
        <source>No MIDI keyboard is connected.</source>
        <translation>MIDI-клавиатура не подключена.</translation>
    </message>
    <message>
        <source>MIDI keyboards: %1.</source>
        <translation>MIDI-клавиатуры: %1.</translation>
    </message>
    <message>
        <source>The system grants real-time priority.</source>
        <translation>Система даёт приоритет реального времени.</translation>
    </message>
    <message>
        <source>The system refuses real-time priority, so notes may come late while it is busy.</source>
        <translation>Система не даёт приоритета реального времени, и, когда она занята, ноты могут запаздывать.</translation>
    </message>
    <message>
        <source>Install the package rtkit.</source>
        <translation>Установите пакет rtkit.</translation>
    </message>
    <message>
        <source>The chosen synthesizer, %1, only hands the notes to other programs.</source>
        <translation>Выбранный синтезатор, %1, лишь передаёт ноты другим программам.</translation>
    </message>
    <message>
        <source>Choose another one in the settings, or let a program play them.</source>
        <translation>Выберите в настройках другой или запустите программу, которая их сыграет.</translation>
    </message>
</context>
<context>
    <name>SoundTexts</name>
    <message>
        <source>Sound goes on as soon as the audio system does.</source>
        <translation>Звук продолжится, как только звуковая система снова заработает.</translation>
    </message>
    <message>
        <source>As soon as it is back, it plays again by itself. You can also choose another synthesizer here, or look for the devices again.</source>
        <translation>Как только связь восстановится, звук вернётся сам. Здесь можно также выбрать другой синтезатор или найти устройства заново.</translation>
    </message>
    <message>
        <source>Connect it and look for the devices again, or choose another synthesizer here.</source>
        <translation>Подключите его и найдите устройства заново или выберите здесь другой синтезатор.</translation>
    </message>
    <message>
        <source>Choose another synthesizer here, or another audio system or sound font for the software synthesizer.</source>
        <translation>Выберите здесь другой синтезатор, а для программного синтезатора — другую звуковую систему или другой банк звуков.</translation>
    </message>
    <message>
        <source>Choose a sound font for the software synthesizer, or connect a MIDI synthesizer and look for the devices again.</source>
        <translation>Выберите банк звуков для программного синтезатора или подключите MIDI-синтезатор и найдите устройства заново.</translation>
    </message>
    <message>
        <source>No sound now: the audio system does not answer</source>
        <translation>Звука пока нет: звуковая система не отвечает</translation>
    </message>
    <message>
        <source>Nothing sounds or is recorded: the connection to %1 was lost</source>
        <translation>Нет ни звука, ни записи: потеряна связь с %1</translation>
    </message>
    <message>
        <source>No sound: the connection to %1 was lost</source>
        <translation>Нет звука: потеряна связь с %1</translation>
    </message>
    <message>
        <source>No sound: %1 is not connected</source>
        <translation>Нет звука: не подключено устройство %1</translation>
    </message>
    <message>
        <source>No sound: no synthesizer could be opened</source>
        <translation>Нет звука: не удалось открыть ни одного синтезатора</translation>
    </message>
    <message>
        <source>No sound: there is no synthesizer</source>
        <translation>Нет звука: нет ни одного синтезатора</translation>
    </message>
    <message>
        <source>No sound: %1</source>
        <translation>Нет звука: %1</translation>
    </message>
    <message>
        <source>The MIDI keyboard was disconnected: %1</source>
        <translation>MIDI-клавиатура отключена: %1</translation>
    </message>
    <message>
        <source>Connect it again. If it does not play then, look for the devices again; with an external synthesizer this ends what sounds there.</source>
        <translation>Подключите её снова. Если после этого она не играет, найдите устройства заново; звуки внешнего синтезатора при этом прекратятся.</translation>
    </message>
    <message>
        <source>The MIDI keyboard is connected again: %1</source>
        <translation>MIDI-клавиатура снова подключена: %1</translation>
    </message>
    <message>
        <source>Not recording: nothing sounds, so nothing would be recorded</source>
        <translation>Запись не начата: звука нет, записывать нечего</translation>
    </message>
    <message>
        <source>No sound: the software synthesizer has no sound font</source>
        <translation>Нет звука: у программного синтезатора нет банка звуков</translation>
    </message>
    <message>
        <source>No sound here: %1 hands the notes to other programs</source>
        <translation>Здесь звука нет: %1 передаёт ноты другим программам</translation>
    </message>
    <message>
        <source>Nothing would be heard: no output plays now. The settings tell why.</source>
        <translation>Ничего не будет слышно: сейчас не работает ни один выход. Почему — сказано в настройках.</translation>
    </message>
</context>
<context>
    <name>SplitMark</name>
    <message>
        <source>Split point</source>
        <translation>Точка раздела</translation>
    </message>
    <message>
        <source>Split point: %1. Drag it along the keys, or move it by the arrow keys. A double click, or Home, brings it back to middle C.</source>
        <translation>Точка раздела: %1. Ведите её вдоль клавиш или двигайте стрелками. Двойной щелчок или Home возвращает её к «до» первой октавы.</translation>
    </message>
</context>
<context>
    <name>SynthSettingsGroup</name>
    <message>
        <source>Built-in synthesizer</source>
        <translation>Встроенный синтезатор</translation>
    </message>
    <message>
        <source>Audio output:</source>
        <translation>Вывод звука:</translation>
    </message>
    <message>
        <source>Sound font:</source>
        <translation>Банк звуков:</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Обзор</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>По умолчанию</translation>
    </message>
    <message>
        <source>Latency:</source>
        <translation>Задержка:</translation>
    </message>
    <message>
        <source>Safe</source>
        <translation>Надёжно</translation>
    </message>
    <message>
        <source>Safe never crackles; fast answers a key sooner</source>
        <translation>Надёжно — без треска; быстро — скорее отвечает на клавишу</translation>
    </message>
    <message>
        <source>Fast</source>
        <translation>Быстро</translation>
    </message>
    <message>
        <source>Volume:</source>
        <translation>Громкость:</translation>
    </message>
    <message>
        <source>Reverb</source>
        <translation>Реверберация</translation>
    </message>
    <message>
        <source>Chorus</source>
        <translation>Хорус</translation>
    </message>
    <message>
        <source>Test</source>
        <translation>Проверка</translation>
    </message>
    <message>
        <source>Play a note</source>
        <translation>Сыграть ноту</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Автоматически</translation>
    </message>
    <message>
        <source>No sound font is installed</source>
        <translation>Банк звуков не установлен</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>%1 ms</source>
        <translation>%1 мс</translation>
    </message>
    <message>
        <source>Select sound font</source>
        <translation>Выбор банка звуков</translation>
    </message>
    <message>
        <source>Sound fonts</source>
        <translation>Банки звуков</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Предупреждение</translation>
    </message>
</context>
<context>
    <name>Synthesizer</name>
    <message>
        <source>The sound font cannot be read.</source>
        <translation>Не удаётся прочитать банк звуков (SoundFont).</translation>
    </message>
    <message>
        <source>The file is no sound font.</source>
        <translation>Этот файл — не банк звуков (SoundFont).</translation>
    </message>
    <message>
        <source>The sound font is damaged.</source>
        <translation>Банк звуков (SoundFont) повреждён.</translation>
    </message>
    <message>
        <source>The audio system has stopped.</source>
        <translation>Звуковая система остановилась.</translation>
    </message>
    <message>
        <source>The sound font is still being loaded.</source>
        <translation>Банк звуков (SoundFont) ещё загружается.</translation>
    </message>
    <message>
        <source>The audio system does not answer.</source>
        <translation>Звуковая система не отвечает.</translation>
    </message>
    <message>
        <source>The synthesizer cannot be created.</source>
        <translation>Не удаётся создать синтезатор.</translation>
    </message>
    <message>
        <source>The audio driver does not start.</source>
        <translation>Звуковой драйвер не запускается.</translation>
    </message>
    <message>
        <source>The sound font cannot be loaded.</source>
        <translation>Не удаётся загрузить банк звуков (SoundFont).</translation>
    </message>
    <message>
        <source>FluidSynth has no such audio driver here.</source>
        <translation>Такого звукового драйвера в этом FluidSynth нет.</translation>
    </message>
    <message>
        <source>KIVORA_AUDIO_FILE names no file to write.</source>
        <translation>Переменная KIVORA_AUDIO_FILE не называет файла для записи.</translation>
    </message>
    <message>
        <source>No JACK server runs.</source>
        <translation>Сервер JACK не запущен.</translation>
    </message>
    <message>
        <source>There is no sound card.</source>
        <translation>Звуковая карта не найдена.</translation>
    </message>
    <message>
        <source>No sound font is found.</source>
        <translation>Банк звуков (SoundFont) не найден.</translation>
    </message>
    <message>
        <source>No sound can be played.</source>
        <translation>Звук воспроизвести нельзя.</translation>
    </message>
    <message>
        <source>The sound server does not run or refuses the connection.</source>
        <translation>Звуковой сервер не запущен или отклоняет соединение.</translation>
    </message>
    <message>
        <source>The sound card is used by another program.</source>
        <translation>Звуковая карта занята другой программой.</translation>
    </message>
    <message>
        <source>The sound card cannot be opened.</source>
        <translation>Не удалось открыть звуковую карту.</translation>
    </message>
</context>
<context>
    <name>VelocitySettings</name>
    <message>
        <source>Velocity</source>
        <translation>Сила нажатия</translation>
    </message>
    <message>
        <source>MIDI keyboard:</source>
        <translation>MIDI-клавиатура:</translation>
    </message>
    <message>
        <source>Fixed velocity:</source>
        <translation>Постоянная сила:</translation>
    </message>
    <message>
        <source>Smallest:</source>
        <translation>Наименьшая:</translation>
    </message>
    <message>
        <source>Greatest:</source>
        <translation>Наибольшая:</translation>
    </message>
    <message>
        <source>Softest touch:</source>
        <translation>Самое слабое нажатие:</translation>
    </message>
    <message>
        <source>Middle point, touch:</source>
        <translation>Средняя точка, нажатие:</translation>
    </message>
    <message>
        <source>Middle point, velocity:</source>
        <translation>Средняя точка, сила:</translation>
    </message>
    <message>
        <source>Hardest touch:</source>
        <translation>Самое сильное нажатие:</translation>
    </message>
    <message>
        <source>On the screen&apos;s piano the height of the click is the velocity</source>
        <translation>На экранном фортепиано сила зависит от высоты щелчка</translation>
    </message>
    <message>
        <source>Velocity curve</source>
        <translation>Кривая силы нажатия</translation>
    </message>
    <message>
        <source>To the right what comes in, up what is played. The last notes are dots. The points of a drawn curve can be moved.</source>
        <translation>Вправо — что приходит, вверх — что играется. Последние ноты — точки. Точки нарисованной кривой можно двигать.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Linear</source>
        <translation>Как есть</translation>
    </message>
    <message>
        <source>Soft</source>
        <translation>Мягкая</translation>
    </message>
    <message>
        <source>Hard</source>
        <translation>Жёсткая</translation>
    </message>
    <message>
        <source>Fixed</source>
        <translation>Постоянная</translation>
    </message>
    <message>
        <source>Drawn by three points</source>
        <translation>Нарисованная по трём точкам</translation>
    </message>
</context>
<context>
    <name>WheelStrip</name>
    <message>
        <source>Wheels and pedals</source>
        <translation>Колёса и педали</translation>
    </message>
    <message>
        <source>Pitch</source>
        <comment>legend of a wheel</comment>
        <translation>Тон</translation>
    </message>
    <message>
        <source>Mod</source>
        <comment>legend of a wheel: modulation</comment>
        <translation>Мод</translation>
    </message>
    <message>
        <source>Expr</source>
        <comment>legend of a wheel: expression</comment>
        <translation>Экспр</translation>
    </message>
    <message>
        <source>Soft</source>
        <comment>legend of a pedal</comment>
        <translation>Лев</translation>
    </message>
    <message>
        <source>Sost</source>
        <comment>legend of a pedal: sostenuto</comment>
        <translation>Сред</translation>
    </message>
    <message>
        <source>Sust</source>
        <comment>legend of a pedal: sustain</comment>
        <translation>Прав</translation>
    </message>
    <message>
        <source>Drag it, turn the wheel of the mouse over it, or use the arrow keys. A double click, or Home, brings it to its rest.</source>
        <translation>Двигайте мышью или пальцем, вращайте колёсико мыши над ним или нажимайте стрелки. Двойной щелчок или Home возвращает в исходное положение.</translation>
    </message>
    <message>
        <source>Pitch bend</source>
        <translation>Высота тона</translation>
    </message>
    <message>
        <source>Drag it, or hold an arrow or page key; it springs back when you let go.</source>
        <translation>Двигайте мышью или пальцем либо держите стрелку, Page Up или Page Down; если отпустить, колесо вернётся само.</translation>
    </message>
    <message>
        <source>Modulation</source>
        <translation>Модуляция</translation>
    </message>
    <message>
        <source>Expression</source>
        <translation>Экспрессия</translation>
    </message>
    <message>
        <source>A click presses the pedal, another one lifts it.</source>
        <translation>Щелчок опускает педаль, ещё один поднимает.</translation>
    </message>
    <message>
        <source>Soft pedal</source>
        <translation>Левая педаль (тихая)</translation>
    </message>
    <message>
        <source>Sostenuto pedal</source>
        <translation>Средняя педаль (состенуто)</translation>
    </message>
    <message>
        <source>Sustain pedal</source>
        <translation>Правая педаль (сустейн)</translation>
    </message>
    <message>
        <source>%1%</source>
        <translation>%1 %</translation>
    </message>
</context>
<context>
    <name>arpeggiatorSettings</name>
    <message>
        <source>Arpeggiator Settings</source>
        <translation>Настройки арпеджиатора</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Вкл</translation>
    </message>
    <message>
        <source>Enable/disable this arpegiator</source>
        <translation>Включить или выключить этот арпеджиатор</translation>
    </message>
    <message>
        <source>Arpeggiator</source>
        <translation>Арпеджиатор</translation>
    </message>
    <message>
        <source>Ends</source>
        <translation>Повтор</translation>
    </message>
    <message>
        <source>On: repeat lowest and highest notes in Up-Down and Down-Up modes</source>
        <translation>Вкл: повторять нижнюю и верхнюю ноты в режимах «Вверх-вниз» и «Вниз-вверх»</translation>
    </message>
    <message>
        <source>Rept.</source>
        <translation>краёв</translation>
    </message>
    <message>
        <source>Direction</source>
        <translation>Направление</translation>
    </message>
    <message>
        <source>Order of notes</source>
        <translation>Порядок нот</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Вверх</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Вниз</translation>
    </message>
    <message>
        <source>Up-Down</source>
        <translation>Вверх-вниз</translation>
    </message>
    <message>
        <source>Down-Up</source>
        <translation>Вниз-вверх</translation>
    </message>
    <message>
        <source>Random</source>
        <translation>Случайно</translation>
    </message>
    <message>
        <source>Lowest Note</source>
        <translation>Нижняя нота</translation>
    </message>
    <message>
        <source>Highest Note</source>
        <translation>Верхняя нота</translation>
    </message>
    <message>
        <source>Range</source>
        <translation>Диапазон</translation>
    </message>
    <message>
        <source>Extend chord by adding notes from octaves below and above</source>
        <translation>Расширить аккорд нотами из октав ниже и выше</translation>
    </message>
    <message>
        <source>1x</source>
        <translation>1x</translation>
    </message>
    <message>
        <source>2x</source>
        <translation>2x</translation>
    </message>
    <message>
        <source>3x</source>
        <translation>3x</translation>
    </message>
    <message>
        <source>4x</source>
        <translation>4x</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Нота</translation>
    </message>
    <message>
        <source>Length of the notes</source>
        <translation>Длительность нот</translation>
    </message>
    <message>
        <source>1/2</source>
        <translation>1/2</translation>
    </message>
    <message>
        <source>1/2t</source>
        <translation>1/2т</translation>
    </message>
    <message>
        <source>1/4</source>
        <translation>1/4</translation>
    </message>
    <message>
        <source>1/4t</source>
        <translation>1/4т</translation>
    </message>
    <message>
        <source>1/8</source>
        <translation>1/8</translation>
    </message>
    <message>
        <source>1/8t</source>
        <translation>1/8т</translation>
    </message>
    <message>
        <source>1/16</source>
        <translation>1/16</translation>
    </message>
    <message>
        <source>1/16t</source>
        <translation>1/16т</translation>
    </message>
    <message>
        <source>1/32</source>
        <translation>1/32</translation>
    </message>
    <message>
        <source>1/32t</source>
        <translation>1/32т</translation>
    </message>
    <message>
        <source>% Gate</source>
        <translation>Гейт %</translation>
    </message>
    <message>
        <source>Smaller value: Staccato; bigger value: Legato</source>
        <translation>Меньше — стаккато, больше — легато</translation>
    </message>
    <message>
        <source>100</source>
        <translation>100</translation>
    </message>
    <message>
        <source>Velocity</source>
        <translation>Сила</translation>
    </message>
    <message>
        <source>On: use last note velocity; Off: use each key&apos;s velocity</source>
        <translation>Вкл: сила последней ноты; выкл: сила нажатия каждой клавиши</translation>
    </message>
    <message>
        <source>Last</source>
        <translation>посл.</translation>
    </message>
</context>
<context>
    <name>kivoraAbout</name>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Version:</source>
        <translation>Версия:</translation>
    </message>
    <message>
        <source>Web Site</source>
        <translation>Веб-сайт</translation>
    </message>
    <message>
        <source>Copyright and Library Information</source>
        <translation>Авторские права и библиотеки</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>Credits</source>
        <translation>Авторы</translation>
    </message>
</context>
<context>
    <name>legalinfo</name>
    <message>
        <source>Legal Information</source>
        <translation>Правовая информация</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
</context>
<context>
    <name>midiSettings</name>
    <message>
        <source>MIDI Settings</source>
        <translation>Настройки MIDI</translation>
    </message>
    <message>
        <source>MIDI I/O</source>
        <translation>Вход и выход MIDI</translation>
    </message>
    <message>
        <source>MIDI Keyboard:</source>
        <translation>MIDI-клавиатура:</translation>
    </message>
    <message>
        <source>MIDI Synthesizer:</source>
        <translation>MIDI-синтезатор:</translation>
    </message>
    <message>
        <source>Rescan</source>
        <translation>Обновить</translation>
    </message>
    <message>
        <source>Look for MIDI devices again</source>
        <translation>Искать устройства MIDI заново</translation>
    </message>
    <message>
        <source>PC Keyboard Playing</source>
        <translation>Игра на клавиатуре компьютера</translation>
    </message>
    <message>
        <source>Note velocity with SHIFT:</source>
        <translation>Сила нажатия с SHIFT:</translation>
    </message>
    <message>
        <source>Normal velocity:</source>
        <translation>Обычная сила нажатия:</translation>
    </message>
    <message>
        <source>Note velocity with CTRL:</source>
        <translation>Сила нажатия с CTRL:</translation>
    </message>
    <message>
        <source>Restore Default Values</source>
        <translation>Вернуть значения по умолчанию</translation>
    </message>
    <message>
        <source>Interface Options</source>
        <translation>Вид</translation>
    </message>
    <message>
        <source>Piano key colors:</source>
        <translation>Цвета клавиш:</translation>
    </message>
    <message>
        <source>Piano keyboard coloring</source>
        <translation>Раскраска клавиатуры фортепиано</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Нет</translation>
    </message>
    <message>
        <source>Rainbow</source>
        <translation>Радуга</translation>
    </message>
    <message>
        <source>Scriabin</source>
        <translation>Скрябин</translation>
    </message>
    <message>
        <source>Background color:</source>
        <translation>Цвет панели:</translation>
    </message>
    <message>
        <source>Select</source>
        <translation>Выбрать</translation>
    </message>
    <message>
        <source>Default</source>
        <translation>По умолчанию</translation>
    </message>
    <message>
        <source>Main LCD display color:</source>
        <translation>Цвет главного дисплея:</translation>
    </message>
    <message>
        <source>Secondary LCDs display color:</source>
        <translation>Цвет малых дисплеев:</translation>
    </message>
    <message>
        <source>Wallpaper image:</source>
        <translation>Изображение на панели:</translation>
    </message>
    <message>
        <source>Browse</source>
        <translation>Обзор</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Убрать</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Язык</translation>
    </message>
    <message>
        <source>Translate patch names</source>
        <translation>Переводить названия тембров</translation>
    </message>
    <message>
        <source>Show local alphabet letters in PC keyboard key hint</source>
        <translation>Показывать над клавишами буквы местного алфавита</translation>
    </message>
    <message>
        <source>Show note names on keys</source>
        <translation>Показывать названия нот на клавишах</translation>
    </message>
    <message>
        <source>Language:</source>
        <translation>Язык:</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Select Background Color</source>
        <translation>Выбор цвета панели</translation>
    </message>
    <message>
        <source>Select Primary LCD Display Color</source>
        <translation>Выбор цвета главного дисплея</translation>
    </message>
    <message>
        <source>Select Secondary LCD Display Color</source>
        <translation>Выбор цвета малых дисплеев</translation>
    </message>
    <message>
        <source>Select wallpaper image</source>
        <translation>Выбор изображения на панель</translation>
    </message>
    <message>
        <source>Image files</source>
        <translation>Файлы изображений</translation>
    </message>
    <message>
        <source>MIDI devices cannot be looked for while recording.</source>
        <translation>Во время записи искать устройства MIDI нельзя.</translation>
    </message>
    <message>
        <source>Looking for MIDI devices failed</source>
        <translation>Поиск устройств MIDI не удался</translation>
    </message>
    <message>
        <source>An unknown exception occured.</source>
        <translation>Возникло неизвестное исключение.</translation>
    </message>
    <message>
        <source>Setting input port failed</source>
        <translation>Не удалось назначить входной порт</translation>
    </message>
    <message>
        <source>Setting output port failed</source>
        <translation>Не удалось назначить выходной порт</translation>
    </message>
    <message>
        <source>Failed to save the settings.</source>
        <translation>Не удалось сохранить настройки.</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Computer keys:</source>
        <translation>Чтение клавиш:</translation>
    </message>
    <message>
        <source>How the note of a key is found: by the character that it types, or by its place on the keyboard, where a US keyboard has that character</source>
        <translation>Как находится нота клавиши: по символу, который она печатает, или по её месту на клавиатуре, как на клавиатуре США</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Автоматически</translation>
    </message>
    <message>
        <source>As typed</source>
        <translation>По символу</translation>
    </message>
    <message>
        <source>By place</source>
        <translation>По месту</translation>
    </message>
    <message>
        <source>Sound Check...</source>
        <translation>Проверка звука...</translation>
    </message>
    <message>
        <source>Says what would sound, what would not and what to do about it</source>
        <translation>Говорит, что зазвучит, что нет и что с этим делать</translation>
    </message>
    <message>
        <source>Recording</source>
        <translation>Запись</translation>
    </message>
    <message>
        <source>Keep the last 15 minutes of playing in memory</source>
        <translation>Хранить в памяти последние 15 минут игры</translation>
    </message>
    <message>
        <source>So that it can be saved although it was not recorded. It is lost when the program ends.</source>
        <translation>Чтобы их можно было сохранить, хотя запись не шла. Они пропадут, когда программа завершит работу.</translation>
    </message>
    <message>
        <source>Write the panel&apos;s tempo</source>
        <translation>Записывать темп панели</translation>
    </message>
    <message>
        <source>So that a recording lies on the bars and beats of the program that opens it.</source>
        <translation>Чтобы запись ложилась на такты и доли программы, которая её откроет.</translation>
    </message>
</context>
</TS>
